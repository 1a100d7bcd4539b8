// Records of a database as comments of a recording, and back.
#include "recording/database_lines.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tembra::sim::test {
namespace {

using recording::DatabaseRecord;
using recording::lineOf;
using recording::recordIn;

TEST(DatabaseLine, HoldsARecordToTheByte) {
  for (const DatabaseRecord& record : {DatabaseRecord{"NextDevid", {'3'}}, DatabaseRecord{"3.1", {1, 0, 255, 0, 0}},
                                       DatabaseRecord{"4", {}}, DatabaseRecord{"5", std::vector<unsigned char>(512)}}) {
    EXPECT_EQ(recordIn(lineOf(record)), record) << lineOf(record);
  }
  EXPECT_EQ(lineOf({"3.1", {1, 0, 255, 0, 0}}), "database 3.1 5 0100ff");
}

TEST(DatabaseLine, IsNoOtherComment) {
  for (const char* const line :
       {"", "database", "database 3", "database 3 x 01", "database 3 1 0102", "database 3 1 0", "database 3 1 01 02",
        "database 3 4097 01", "library -> HA server   database 3 1 01", "server zwave killed"}) {
    EXPECT_EQ(recordIn(line), std::nullopt) << line;
  }
  EXPECT_EQ(lineOf({"3", std::vector<unsigned char>(4097)}), "") << "no program of the router writes so much";
}

}  // namespace
}  // namespace tembra::sim::test
