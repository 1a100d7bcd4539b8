#include "support/database.h"

#include <gtest/gtest.h>

#include <cstring>
#include <fstream>
#include <sstream>

namespace tembra::test {

Writer openWriter(const std::string& path) {
  Writer depot(dpopen(path.c_str(), DP_OWRITER | DP_OCREAT, -1));
  EXPECT_NE(depot, nullptr) << dperrmsg(dpecode);
  return depot;
}

void put(DEPOT* depot, const std::string& key, const std::string& value) {
  EXPECT_TRUE(dpput(depot, key.c_str(), -1, value.data(), static_cast<int>(value.size()), DP_DOVER));
}

std::string record(int id, const std::string& name, const std::string& typeName, int radioKind, unsigned node,
                   unsigned address) {
  DeviceRecord record{};
  record.id = id;
  name.copy(record.name, sizeof record.name);
  typeName.copy(record.typeName, sizeof record.typeName);
  record.radioKind = radioKind;
  record.zwaveNode = node;
  record.zigbeeAddress = address;
  std::string bytes(sizeof record, '\0');
  std::memcpy(bytes.data(), &record, sizeof record);
  return bytes;
}

std::string healthyDatabase() {
  constexpr char kPath[] = "/tmp/other";
  {
    const Writer database = openWriter(kPath);
    for (int id = 1; id <= 50; ++id) put(database.get(), std::to_string(id), record(id, "x", "Siren", 2, 5, 0));
  }
  return readFile(kPath);
}

void writeFile(const std::string& path, const std::string& bytes) { std::ofstream(path, std::ios::binary) << bytes; }

std::string readFile(const std::string& path) {
  std::ostringstream bytes;
  bytes << std::ifstream(path, std::ios::binary).rdbuf();
  return bytes.str();
}

}  // namespace tembra::test
