// The simulator's database, read through Depot.
#ifndef TEMBRA_TESTS_SIM_SUPPORT_DATABASE_H
#define TEMBRA_TESTS_SIM_SUPPORT_DATABASE_H

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "sim/core/record_bytes.h"
#include "sim/ha/depot_file.h"

namespace tembra::sim::test {

inline constexpr const char* kDatabase = "/tmp/ddb";

inline std::set<std::string> keys() {
  const DepotFile file(kDatabase);
  const std::vector<std::string> all = file.keys();
  return {all.begin(), all.end()};
}

inline std::string textAt(const std::string& key) {
  const DepotFile file(kDatabase);
  const auto value = file.get(key);
  return value ? std::string(value->begin(), value->end()) : "missing";
}

template <typename Record>
Record recordAt(const std::string& key) {
  const DepotFile file(kDatabase);
  const auto value = file.get(key);
  EXPECT_TRUE(value.has_value()) << key;
  return recordFrom<Record>(value.value_or(std::vector<unsigned char>()));
}

}  // namespace tembra::sim::test

#endif
