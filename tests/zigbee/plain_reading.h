// The classification rules of ZigBee devices, told a second time and as plainly as they can be told: the library's own
// tables are compared with this. Record bytes are named by their offset on purpose, so that nothing is shared.
#ifndef TEMBRA_TESTS_ZIGBEE_PLAIN_READING_H
#define TEMBRA_TESTS_ZIGBEE_PLAIN_READING_H

#include <array>
#include <string>

/// What the service object holds of the device being added.
struct PlainDevice {
  std::array<unsigned char, 444> record{};
  std::array<char, 180> name{};
  int classifiedType = 0;

  friend bool operator==(const PlainDevice&, const PlainDevice&) = default;
};

struct PlainOutcome {
  int result = 0;
  std::string log;  // one "log <level> <text>" line each, control characters shown

  friend bool operator==(const PlainOutcome&, const PlainOutcome&) = default;
};

/// Classifies `device` in place, as the device with this id.
PlainOutcome readPlainly(PlainDevice& device, int deviceId);

/// The device-type name of an IAS zone type.
std::string plainZoneName(unsigned zoneType, const std::string& manufacturer, const std::string& model);

#endif
