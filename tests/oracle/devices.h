// The devices that take part in the runs, and what becomes of each, written out by hand.
#ifndef TEMBRA_TESTS_ORACLE_DEVICES_H
#define TEMBRA_TESTS_ORACLE_DEVICES_H

#include <string>
#include <vector>

#include "record.h"

namespace oracle {

struct ZwaveValue {
  int commandClass, index, instance;
  int indexType;  // what it becomes; 0: nothing
};

struct ZwaveDevice {
  const char* name;
  std::vector<int> classes{};
  int basic = 4;
  int generic = 0;
  int specific = 0;
  std::vector<ZwaveValue> values{};
  // What becomes of it: its type, and the lines (level 0) that the decision writes.
  int type = 0;
  std::vector<const char*> lines{};

  /// Its block as the Z-Wave server sends it, without the node id.
  [[nodiscard]] Record<1036> block() const;
};

struct ZigbeeCluster {
  int id, endpoint;
};

struct ZigbeeEntry {
  int type;
  int endpoint;  // -1: as it was received
};

struct ZigbeeDevice {
  const char* name;
  std::vector<ZigbeeCluster> clusters;
  const char* maker = "";
  const char* model = "";
  int zone = 0;
  int preset = 0;  // the type byte as it is received
  std::array<int, 3> checks{};
  std::array<int, 2> productWords{};
  // What becomes of it.
  int result = 0;
  int type = 0;
  int classifiedType = 0;
  std::vector<const char*> names{};    // words of the default names that it gets after "UnknownDevice"
  std::vector<ZigbeeEntry> entries{};  // from position 1 on
  int endpointsBehind = 0;             // how many endpoints are written behind the entries, each the last entry's
  int counted = 0;                     // clusters that the last line counts
  std::vector<const char*> lines{};    // level 0, before that line

  /// Its description as the ZigBee server sends it, without address and status.
  [[nodiscard]] Record<444> description() const;
};

struct HueEntry {
  const char* json;
  const char* id;       // null: the entry has none
  const char* address;  // null: the entry has none
};

const std::vector<ZwaveDevice>& zwaveDevices();
const std::vector<ZigbeeDevice>& zigbeeDevices();
const std::vector<HueEntry>& hueEntries();

/// The device of a block, a description, an entry's text; null when it is none of those above.
const ZwaveDevice* find(const Record<1036>& block);
const ZigbeeDevice* find(const Record<444>& description);
const HueEntry* findHueEntry(const std::string& json);

}  // namespace oracle

#endif
