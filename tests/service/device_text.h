// A device as a line of text.
#ifndef TEMBRA_TESTS_SERVICE_DEVICE_TEXT_H
#define TEMBRA_TESTS_SERVICE_DEVICE_TEXT_H

#include <tembra/service.h>

#include <string>

namespace service {

/// "12 Lamp, 1 BinarySwitch, radio 2 at 5, values 1"
inline std::string textOf(const tembra_device& device) {
  return std::to_string(device.id) + " " + device.name + ", " + std::to_string(device.type) + " " + device.type_name +
         ", radio " + std::to_string(device.radio) + " at " + std::to_string(device.address) + ", values " +
         std::to_string(device.values);
}

}  // namespace service

#endif
