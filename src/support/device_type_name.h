// Names of device types from the router's device-type library, and the default names of devices made from them.
#ifndef TEMBRA_SUPPORT_DEVICE_TYPE_NAME_H
#define TEMBRA_SUPPORT_DEVICE_TYPE_NAME_H

#include <tembra/platform.h>

#include <cstddef>

namespace tembra {

/// Size of every device name field.
inline constexpr std::size_t kDeviceNameSize = 180;

/// Room that front ends give a numbered name: a name of 178 characters with the longest id, "-2147483648".
inline constexpr std::size_t kNumberedNameSize = 192;

/// The name of one device type, at most 179 characters whatever the router's library writes within 512 bytes.
class DeviceTypeName {
 public:
  explicit DeviceTypeName(DevType type) {
    DevtypeEnumToStr(type, text_);
    text_[kDeviceNameSize - 1] = '\0';
  }
  [[nodiscard]] const char* text() const { return text_; }

 private:
  char text_[512] = {};
};

/// Formats "<word> #<id>", the word cut at 179 characters and the whole at 191. @return its length.
int formatNumberedName(char (&out)[kNumberedNameSize], const char* word, int id);

/// Puts "<word> #<id>" into a device's name field; bytes behind its NUL keep their value.
void setNumberedName(char (&field)[kDeviceNameSize], const char* word, int id);

}  // namespace tembra

#endif
