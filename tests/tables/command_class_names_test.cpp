// Names of Z-Wave command classes, both ways.
#include <gtest/gtest.h>
#include <tembra/names.h>

#include <algorithm>
#include <cctype>
#include <memory>
#include <set>
#include <string>

#include "kit/memory.h"
#include "kit/sanitized.h"

namespace {

struct CommandClass {
  unsigned number;
  const char* name;
};

constexpr CommandClass kCommandClasses[] = {
    {0x20, "BASIC"},
    {0x21, "CONTROLLER REPLICATION"},
    {0x22, "APPLICATION STATUS"},
    {0x23, "ZIP SERVICES"},
    {0x24, "ZIP SERVER"},
    {0x25, "SWITCH BINARY"},
    {0x26, "SWITCH MULTILEVEL"},
    {0x27, "SWITCH ALL"},
    {0x28, "SWITCH TOGGLE BINARY"},
    {0x29, "SWITCH TOGGLE MULTILEVEL"},
    {0x2A, "CHIMNEY FAN"},
    {0x2B, "SCENE ACTIVATION"},
    {0x2C, "SCENE ACTUATOR CONF"},
    {0x2D, "SCENE CONTROLLER CONF"},
    {0x2E, "ZIP CLIENT"},
    {0x2F, "ZIP ADV SERVICES"},
    {0x30, "SENSOR BINARY"},
    {0x31, "SENSOR MULTILEVEL"},
    {0x32, "METER"},
    {0x33, "ZIP ADV SERVER"},
    {0x34, "ZIP ADV CLIENT"},
    {0x35, "METER PULSE"},
    {0x38, "THERMOSTAT HEATING"},
    {0x40, "THERMOSTAT MODE"},
    {0x42, "THERMOSTAT OPERATING STATE"},
    {0x43, "THERMOSTAT SETPOINT"},
    {0x44, "THERMOSTAT FAN MODE"},
    {0x45, "THERMOSTAT FAN STATE"},
    {0x46, "CLIMATE CONTROL SCHEDULE"},
    {0x47, "THERMOSTAT SETBACK"},
    {0x4C, "DOOR LOCK LOGGING"},
    {0x4E, "SCHEDULE ENTRY LOCK"},
    {0x50, "BASIC WINDOW COVERING"},
    {0x51, "MTP WINDOW COVERING"},
    {0x5B, "CENTRAL SCENE"},
    {0x60, "MULTI INSTANCE"},
    {0x62, "DOOR LOCK"},
    {0x63, "USER CODE"},
    {0x66, "BARRIER_OPERATOR"},
    {0x70, "CONFIGURATION"},
    {0x71, "ALARM"},
    {0x72, "MANUFACTURER SPECIFIC"},
    {0x73, "POWERLEVEL"},
    {0x75, "PROTECTION"},
    {0x76, "LOCK"},
    {0x77, "NODE NAMING"},
    {0x7A, "FIRMWARE UPDATE MD"},
    {0x7B, "GROUPING NAME"},
    {0x7C, "REMOTE ASSOCIATION ACTIVATE"},
    {0x7D, "REMOTE ASSOCIATION"},
    {0x80, "BATTERY"},
    {0x81, "CLOCK"},
    {0x82, "HAIL"},
    {0x84, "WAKE UP"},
    {0x85, "ASSOCIATION"},
    {0x86, "VERSION"},
    {0x87, "INDICATOR"},
    {0x88, "PROPRIETARY"},
    {0x89, "LANGUAGE"},
    {0x8A, "TIME"},
    {0x8B, "TIME PARAMETERS"},
    {0x8C, "GEOGRAPHIC LOCATION"},
    {0x8D, "COMPOSITE"},
    {0x8E, "MULTI INSTANCE ASSOCIATION"},
    {0x8F, "MULTI CMD"},
    {0x90, "ENERGY PRODUCTION"},
    {0x91, "MANUFACTURER PROPRIETARY"},
    {0x92, "SCREEN MD"},
    {0x93, "SCREEN ATTRIBUTES"},
    {0x94, "SIMPLE AV CONTROL"},
    {0x95, "AV CONTENT DIRECTORY MD"},
    {0x96, "AV RENDERER STATUS"},
    {0x97, "AV CONTENT SEARCH MD"},
    {0x98, "SECURITY"},
    {0x99, "AV TAGGING MD"},
    {0x9A, "IP CONFIGURATION"},
    {0x9B, "ASSOCIATION COMMAND CONFIGURATION"},
    {0x9C, "SENSOR ALARM"},
    {0x9D, "SILENCE ALARM"},
    {0x9E, "SENSOR CONFIGURATION"},
    {0xEF, "MARK"},
    {0xF0, "NON INTEROPERABLE"},
};
constexpr std::size_t kRows = 82;

constexpr unsigned kUnknown = 255;
constexpr unsigned kNotKnownByName = 0x66;

std::string nameOf(unsigned number) {
  for (const CommandClass& row : kCommandClasses) {
    if (row.number == number) return row.name;
  }
  return "NO OPERATION";
}

unsigned numberOf(const std::string& name) {
  if (name == "NO OPERATION") return 0;
  for (const CommandClass& row : kCommandClasses) {
    if (row.number != kNotKnownByName && name == row.name) return row.number;
  }
  return kUnknown;
}

// The name at the end of its memory, so that a sanitizer sees a read behind its NUL.
unsigned asked(const std::string& name) {
  const auto copy = std::make_unique<char[]>(name.size() + 1);
  name.copy(copy.get(), name.size());
  return cclassNum(copy.get());
}

}  // namespace

TEST(CommandClassNamesTest, EveryNumber) {
  std::size_t named = 0;
  for (unsigned number = 0; number < 256; ++number) {
    EXPECT_EQ(cclassStr(static_cast<unsigned char>(number)), nameOf(number)) << number;
    if (nameOf(number) != "NO OPERATION") ++named;
  }
  EXPECT_EQ(named, kRows);
  EXPECT_EQ(std::size(kCommandClasses), kRows);
}

TEST(CommandClassNamesTest, NumbersWithoutAName) {
  constexpr int holes[] = {0x00, 0x01, 0x1F, 0x36, 0x37, 0x39, 0x3F, 0x41, 0x48,
                           0x4B, 0x74, 0x83, 0x9F, 0xEE, 0xF1, 0xFE, 0xFF};
  for (const int number : holes) EXPECT_STREQ(cclassStr(static_cast<unsigned char>(number)), "NO OPERATION") << number;
}

TEST(CommandClassNamesTest, EveryNameButOneGivesItsNumber) {
  std::set<unsigned> numbers;
  for (const CommandClass& row : kCommandClasses) {
    if (row.number == kNotKnownByName) continue;
    EXPECT_EQ(asked(row.name), row.number) << row.name;
    EXPECT_EQ(cclassNum(cclassStr(static_cast<unsigned char>(row.number))), row.number);
    numbers.insert(row.number);
  }
  EXPECT_EQ(numbers.size(), kRows - 1);
  EXPECT_EQ(asked("BARRIER_OPERATOR"), kUnknown);
  EXPECT_EQ(cclassNum(cclassStr(kNotKnownByName)), kUnknown);
}

TEST(CommandClassNamesTest, SpecialNames) {
  EXPECT_EQ(asked("NO OPERATION"), 0U);
  EXPECT_EQ(asked("BASIC"), 0x20U);
  EXPECT_EQ(asked("MARK"), 0xEFU);
  EXPECT_EQ(asked("NON INTEROPERABLE"), 0xF0U);
  for (const char* name : {"", " ", "basic", "Basic", "BASIC ", " BASIC", "BARRIER OPERATOR", "barrier_operator",
                           "NO_OPERATION", "no operation", "SWITCH_BINARY", "SWITCH  BINARY", "0x20", "32", "%s"}) {
    EXPECT_EQ(asked(name), kUnknown) << name;
  }
  EXPECT_EQ(asked(std::string(100000, 'B')), kUnknown);
  EXPECT_EQ(cclassNum(nullptr), kUnknown);
}

// Every name with one character changed, left out or doubled, cut short, in small letters: all against the table.
TEST(CommandClassNamesTest, WholeTextsAreCompared) {
  std::size_t tried = 0;
  const auto expectAsInTheTable = [&tried](const std::string& name) {
    EXPECT_EQ(asked(name), numberOf(name)) << name;
    ++tried;
  };
  for (unsigned number = 0; number < 256; ++number) {
    const std::string name = nameOf(number);
    if (number != 0 && name == "NO OPERATION") continue;
    std::string small = name;
    std::transform(small.begin(), small.end(), small.begin(), [](unsigned char c) { return std::tolower(c); });
    expectAsInTheTable(small);
    for (std::size_t at = 0; at < name.size(); ++at) {
      expectAsInTheTable(name.substr(0, at));
      expectAsInTheTable(name.substr(at));
      expectAsInTheTable(name.substr(0, at) + name.substr(at + 1));
      expectAsInTheTable(name.substr(0, at) + name[at] + name.substr(at));
      for (int byte = 1; byte < 256; byte += kit::kOneIn) {
        std::string changed = name;
        changed[at] = static_cast<char>(byte);
        expectAsInTheTable(changed);
      }
    }
  }
  EXPECT_GT(tried, 82U * 255U / kit::kOneIn);
}

TEST(CommandClassNamesTest, NothingIsAllocated) {
  const kit::AllocationCount allocations;
  unsigned sum = 0;
  for (unsigned number = 0; number < 256; ++number) {
    const char* name = cclassStr(static_cast<unsigned char>(number));
    if (name != cclassStr(static_cast<unsigned char>(number))) ++sum;
    sum += cclassNum(name) & 0;
  }
  sum += cclassNum("a name that nobody knows, and that is longer than any small text") - kUnknown;
  EXPECT_EQ(sum, 0U) << "a number's name is always the same text";
  EXPECT_EQ(allocations.value(), 0U);
}
