// The device descriptions that the ZigBee server sends.
#ifndef TEMBRA_SIM_ZIGBEE_DESCRIPTIONS_H
#define TEMBRA_SIM_ZIGBEE_DESCRIPTIONS_H

#include <string>

#include "sim/zigbee/catalogue.h"
#include "tembra/records.h"
#include "tembra/vocabulary.h"

namespace tembra::sim {

/// The address of a device that has none (ZigBee standard, 16-bit network addresses).
inline constexpr unsigned short kNoAddress = 0xFFFE;

/// A description that names the device and says nothing else.
ZbDeviceInfo bareDevice(unsigned short address, int status);

/// The device's full description.
ZbDeviceInfo describedDevice(unsigned short address, int status, const ZigbeeDevice& device);

/// "address 0x1a01"
std::string addressText(unsigned short address);

}  // namespace tembra::sim

#endif
