// The library's classification against the plain reading of the same device.
#ifndef TEMBRA_TESTS_ZIGBEE_AGREEMENT_H
#define TEMBRA_TESTS_ZIGBEE_AGREEMENT_H

#include <string>

#include "harness/router.h"

class Agreement {
 public:
  explicit Agreement(harness::Router& router) : router_(router), assoc_(router.assoc()) {}

  /// Classifies the device both ways, as the device of this id. Compared are every byte of the service object, the
  /// log and the result. A difference fails the test and shows the device; after some more nothing is shown.
  void check(const ZbDeviceInfo& device, int deviceId);

  [[nodiscard]] int checked() const { return checked_; }

 private:
  harness::Router& router_;
  TembraAssociation& assoc_;
  int checked_ = 0;
  int shown_ = 0;
};

/// What classification looks at, as text.
std::string describe(const ZbDeviceInfo& device);

#endif
