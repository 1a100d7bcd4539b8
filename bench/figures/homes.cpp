#include "figures/homes.h"

#include <cstdio>

#include "kit/database.h"

namespace bench {
namespace {

constexpr int kFirstId = 1;

kit::Device describe(int id) {
  kit::Device device(id, "Device " + std::to_string(id));
  const int kind = id % 10;
  if (kind >= 8) return device.type("HueLamp").ip();
  device.type("Siren");
  return kind < 4 ? device.zwave(static_cast<unsigned>(id)) : device.zigbee(static_cast<unsigned>(id));
}

// Value 1 of a bulb is its bridge, value 9 the bridge's user; those of others are as good as any.
void putIndexes(const kit::OpenDatabase& database, int id) {
  for (int index = 1; index <= kIndexesEach; ++index) {
    database.index(id, index, index == 1 ? "02a1b2fffe0a0001" : "user-of-the-bridge");
  }
}

}  // namespace

Home::Home(const std::string& path, int devices) : path_(path) {
  const kit::OpenDatabase database(path.c_str(), DP_OWRITER | DP_OCREAT | DP_OTRUNC);
  for (int id = kFirstId; id < kFirstId + devices; ++id) {
    database.put(describe(id));
    putIndexes(database, id);
  }
  database.put("NextDevid", std::to_string(kFirstId + devices));
  database.put("Version", "1");
}

Home::~Home() { std::remove(path_.c_str()); }

}  // namespace bench
