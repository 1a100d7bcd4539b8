// The library's classification against the oracle's reading of the same device.
#ifndef TEMBRA_TESTS_ZIGBEE_AGREEMENT_H
#define TEMBRA_TESTS_ZIGBEE_AGREEMENT_H

#include <string>
#include <vector>

#include "kit/router.h"

class Agreement {
 public:
  explicit Agreement(kit::Router& router);

  /// Classifies the device both ways, as the device of this id. Compared are all bytes of its record and its name, the
  /// classified type, the log and the result. A difference fails the test and shows the device; after some more nothing
  /// is shown.
  void check(const ZbDeviceInfo& device, int deviceId);

  /// Whether all other bytes of the service object are as they were in the beginning.
  void expectNothingElseTouched() const;

  [[nodiscard]] int checked() const { return checked_; }

 private:
  kit::Router& router_;
  TembraAssociation& assoc_;
  const std::vector<unsigned char> before_;
  int checked_ = 0;
  int shown_ = 0;
};

/// What classification looks at, as text.
std::string describe(const ZbDeviceInfo& device);

#endif
