// tembra-assoc names: every table, a number's text and a text's number.
#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "kit/text.h"
#include "support/program.h"

namespace tembra::test {
namespace {

using Json = nlohmann::json;

struct Table {
  const char* kind;
  std::size_t rows;
  const char* first;
  const char* last;
  const char* value;  ///< of the last row
  const char* name;   ///< of the last row, as a person asks for it
  const char* unknown;
};

constexpr Table kTables[] = {
    {"cclass", 82, "0x20  BASIC", "0xF0  NON INTEROPERABLE", "240", "NON INTEROPERABLE", "0xF1  NO OPERATION"},
    {"cluster", 60, "0x0000  Basic", "0x1000  Touchlink Commissioning", "0x1000", "Touchlink Commissioning",
     "0x00F1  unknown"},
    {"operation", 16, "0  Code_None", "15  Code_UpdateValueOperation", "15", "Code_UpdateValueOperation",
     "241  Unknown Operation"},
    {"command", 17, "0  ControllerCommand_None", "16  ControllerCommand_DeleteButton", "16",
     "ControllerCommand_DeleteButton", "241  Unknown ControllerCommand"},
    {"notification", 27, "0  Type_ValueAdded", "26  Type_Notification", "0x1A", "Type_Notification",
     "241  Unknown Notification"},
    {"state", 11, "0  : no command in progress.", "10  : the node has failed.", "0xa", "the node has failed.",
     "241  : unknown respose."},
    {"error", 13, "0  None", "12  Overflow", "12", "Overflow", "241  Unknown error"},
    {"genre", 5, "0  basic", "4  count", "4", "count", "241  unknown"},
    {"type", 10, "0  bool", "9  raw", "9", "raw", "241  unknown"},
};

TEST(Names, PrintsWholeTables) {
  for (const Table& table : kTables) {
    const Ended ended = runAssoc({"names", table.kind});
    EXPECT_EQ(ended.status, 0) << ended.errors;
    const std::vector<std::string> lines = kit::linesOf(ended.output);
    ASSERT_EQ(lines.size(), table.rows) << table.kind;
    EXPECT_EQ(lines.front(), table.first);
    EXPECT_EQ(lines.back(), table.last);
  }
}

TEST(Names, TranslatesInBothDirections) {
  for (const Table& table : kTables) {
    EXPECT_EQ(runAssoc({"names", table.kind, table.value}).output, std::string(table.last) + "\n");
    EXPECT_EQ(runAssoc({"names", table.kind, table.name}).output, std::string(table.last) + "\n");
    EXPECT_EQ(runAssoc({"names", table.kind, "241"}).output, std::string(table.unknown) + "\n");
  }
}

TEST(Names, FindsEveryNameOfATable) {
  std::size_t found = 0;
  for (const char* kind : {"state", "error"}) {
    for (const std::string& line : kit::linesOf(runAssoc({"names", kind}).output)) {
      found += runAssoc({"names", kind, line.substr(line.find("  ") + 2)}).output == line + "\n" ? 1 : 0;
    }
  }
  EXPECT_EQ(found, 24U);
}

TEST(Names, WritesJson) {
  EXPECT_EQ(Json::parse(runAssoc({"names", "state", "3", "--json"}).output),
            Json::parse(R"({"value": 3, "name": ": command returned an error: "})"));
  const std::vector<std::string> lines = kit::linesOf(runAssoc({"--json", "names", "genre"}).output);
  ASSERT_EQ(lines.size(), 5U);
  EXPECT_EQ(Json::parse(lines[2]), Json::parse(R"({"value": 2, "name": "config"})"));
}

struct OddName {
  std::vector<std::string> arguments;
  int status;
  const char* output;
  const char* sentence;
};

const OddName kOddNames[] = {
    {{"cclass", "0"}, 0, "0x00  NO OPERATION\n", ""},
    {{"cclass", "NO OPERATION"}, 0, "0x00  NO OPERATION\n", ""},
    {{"cclass", "BARRIER_OPERATOR"},
     0,
     "0x66  BARRIER_OPERATOR\n",
     R"(tembra-assoc: cclassNum() does not know "BARRIER_OPERATOR": it answers 255.)"},
    {{"cclass", "basic"}, 0, "0x20  BASIC\n", R"(tembra-assoc: cclassNum() does not know "basic": it answers 255.)"},
    {{"cclass", "Binary Switch"},
     0,
     "0x25  SWITCH BINARY\n",
     R"(tembra-assoc: cclassNum() does not know "Binary Switch": it answers 255.)"},
    {{"cclass", "bayou"}, 1, "", R"(tembra-assoc: "bayou" names no cclass.)"},
    {{"cluster", "msTemperatureMeasurement"}, 0, "0x0402  Temperature Measurement\n", ""},
    {{"cluster", "0x10000"}, 2, "", "tembra-assoc: a cluster is a number from 0 to 0xFFFF."},
    {{"device-types", "doorlock"}, 0, "5  DoorLock\n", ""},
    {{"cclass", "256"}, 2, "", "tembra-assoc: a command class is a number from 0 to 255."},
    {{"cclass", "-1"}, 2, "", "tembra-assoc: a command class is a number from 0 to 255."},
    {{"cclass", "99999999999"}, 1, "", R"(tembra-assoc: "99999999999" names no cclass.)"},
    {{"state", "-1"}, 0, "-1  : unknown respose.\n", ""},
    {{"genre", "unknown"}, 1, "", R"(tembra-assoc: "unknown" names no genre.)"},
    {{"error", ": "}, 1, "", R"(tembra-assoc: ": " names no error.)"},
};

TEST(Names, SaysWhatIsOdd) {
  for (const OddName& odd : kOddNames) {
    std::vector<std::string> arguments = odd.arguments;
    arguments.insert(arguments.begin(), "names");
    const Ended ended = runAssoc(arguments);
    EXPECT_EQ(ended.status, odd.status) << odd.arguments[1];
    EXPECT_EQ(ended.output, odd.output);
    EXPECT_EQ(ended.sentence(), odd.sentence);
  }
}

TEST(Names, RefusesAnUnknownTable) {
  const Ended ended = runAssoc({"names", "colour"});
  EXPECT_EQ(ended.status, 2);
  EXPECT_NE(ended.errors.find("colour"), std::string::npos);
  EXPECT_EQ(runAssoc({"names"}).status, 2);
}

}  // namespace
}  // namespace tembra::test
