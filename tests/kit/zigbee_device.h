// ZigBee device descriptions as a ZigBee server sends them.
#ifndef TEMBRA_TESTS_KIT_ZIGBEE_DEVICE_H
#define TEMBRA_TESTS_KIT_ZIGBEE_DEVICE_H

#include <tembra/records.h>

#include <initializer_list>
#include <string_view>

#include "kit/trace.h"

namespace kit {

/// ZigbeeDevice(0x1234).status(10).maker("NYCE").model("3014").zone(0x0015).cluster(0x0500).cluster(0x0402, 2)
/// Without a call: no clusters (the list holds its end mark 0xFFFF), empty texts, the rest 0.
class ZigbeeDevice {
 public:
  explicit ZigbeeDevice(unsigned short address = 0);

  ZigbeeDevice& status(int value);
  ZigbeeDevice& maker(std::string_view text);  // no NUL when it fills the field
  ZigbeeDevice& model(std::string_view text);  // likewise
  ZigbeeDevice& zone(unsigned short type);
  ZigbeeDevice& cluster(unsigned short id, unsigned short endpoint = 1);  // the end mark follows while there is room
  ZigbeeDevice& clusters(std::initializer_list<unsigned short> ids, unsigned short endpoint = 1);

  /// For everything else: device.info().devType and so on.
  ZbDeviceInfo& info() { return info_; }
  [[nodiscard]] const ZbDeviceInfo& info() const { return info_; }

  [[nodiscard]] Bytes bytes() const;

  /// Only the first bytes of the description.
  [[nodiscard]] Bytes cutTo(std::size_t length) const;

 private:
  ZbDeviceInfo info_{};
  std::size_t clusters_ = 0;
};

}  // namespace kit

#endif
