// The classification rules of ZigBee devices, told a second time and as plainly as they can be told: the library's own
// tables are compared with this. Record bytes are named by their offset on purpose, so that nothing is shared.
#ifndef TEMBRA_TESTS_ORACLE_ZIGBEE_READING_H
#define TEMBRA_TESTS_ORACLE_ZIGBEE_READING_H

#include <string>

#include "effect.h"
#include "record.h"

namespace oracle {

/// What the service object holds of the device being added.
struct DescribedDevice {
  Record<444> record;
  Record<180> name;
  int classifiedType = 0;
};

struct ZigbeeOutcome {
  int result = 0;
  Lines log;
  Lines formatted;  // the texts of those lines that are made of pieces
};

/// Classifies `device` in place, as the device with this id.
ZigbeeOutcome readDescription(DescribedDevice& device, int deviceId);

/// The device-type name of an IAS zone type.
std::string zoneName(unsigned zoneType, const std::string& manufacturer, const std::string& model);

}  // namespace oracle

#endif
