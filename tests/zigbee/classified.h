// What the library makes of a device, as texts that a table can hold.
#ifndef TEMBRA_TESTS_ZIGBEE_CLASSIFIED_H
#define TEMBRA_TESTS_ZIGBEE_CLASSIFIED_H

#include <string>

#include "kit/router.h"

struct Classified {
  int result = 0;
  std::string name;
  int type = 0;
  int classifiedType = 0;
  std::string entries;     // "1@1 18@2 end": type and endpoint of each index entry, and the end mark behind the last
  std::string log;         // the whole trace
  std::string nameInWalk;  // the name when the walk over the clusters was over, before an undecided device gets one
  int typeInWalk = -1;     // likewise
};

/// Classifies the device as number 17.
Classified classify(kit::Router& router, const kit::ZigbeeDevice& device);

/// The entries of the device's record.
std::string entriesOf(const ZbDeviceInfo& device);

/// The log of a classification that goes through, around the lines of its zones.
std::string summary(int clusters, int indexes, const char* zone);

#endif
