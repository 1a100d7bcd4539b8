// A device that the library hands over, in the words of the device list, whatever radio it came from.
#ifndef TEMBRA_SIM_HA_NEW_DEVICE_H
#define TEMBRA_SIM_HA_NEW_DEVICE_H

#include <string>
#include <vector>

#include "tembra/records.h"
#include "tembra/vocabulary.h"

namespace tembra::sim {

/// The radio kind of ZigBee records: the list only promises that it is neither Z-Wave nor IP.
inline constexpr int kRadioZigbee = 1;

/// A value slot of a device.
struct NewIndex {
  int number;  ///< in the key of its record
  unsigned char type;
  unsigned char instance;
  std::string value;
};

struct NewDevice {
  std::string name;
  unsigned int zwaveNode;
  unsigned int zigbeeAddress;
  int radioKind;
  DevType type;
  std::vector<NewIndex> indexes;
};

NewDevice newDeviceFrom(const ZwNodeInfo& node);
NewDevice newDeviceFrom(const ZbDeviceInfo& device);

}  // namespace tembra::sim

#endif
