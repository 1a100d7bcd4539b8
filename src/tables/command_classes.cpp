// Names of the Z-Wave command classes (numbers: Z-Wave standard; names: the system's own).
#include <tembra/names.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tembra {
namespace {

using namespace std::string_view_literals;

struct CommandClass {
  unsigned char number;
  std::string_view name;
};

constexpr CommandClass kCommandClasses[] = {
    {0x00, "NO OPERATION"sv},
    {0x20, "BASIC"sv},
    {0x21, "CONTROLLER REPLICATION"sv},
    {0x22, "APPLICATION STATUS"sv},
    {0x23, "ZIP SERVICES"sv},
    {0x24, "ZIP SERVER"sv},
    {0x25, "SWITCH BINARY"sv},
    {0x26, "SWITCH MULTILEVEL"sv},
    {0x27, "SWITCH ALL"sv},
    {0x28, "SWITCH TOGGLE BINARY"sv},
    {0x29, "SWITCH TOGGLE MULTILEVEL"sv},
    {0x2A, "CHIMNEY FAN"sv},
    {0x2B, "SCENE ACTIVATION"sv},
    {0x2C, "SCENE ACTUATOR CONF"sv},
    {0x2D, "SCENE CONTROLLER CONF"sv},
    {0x2E, "ZIP CLIENT"sv},
    {0x2F, "ZIP ADV SERVICES"sv},
    {0x30, "SENSOR BINARY"sv},
    {0x31, "SENSOR MULTILEVEL"sv},
    {0x32, "METER"sv},
    {0x33, "ZIP ADV SERVER"sv},
    {0x34, "ZIP ADV CLIENT"sv},
    {0x35, "METER PULSE"sv},
    {0x38, "THERMOSTAT HEATING"sv},
    {0x40, "THERMOSTAT MODE"sv},
    {0x42, "THERMOSTAT OPERATING STATE"sv},
    {0x43, "THERMOSTAT SETPOINT"sv},
    {0x44, "THERMOSTAT FAN MODE"sv},
    {0x45, "THERMOSTAT FAN STATE"sv},
    {0x46, "CLIMATE CONTROL SCHEDULE"sv},
    {0x47, "THERMOSTAT SETBACK"sv},
    {0x4C, "DOOR LOCK LOGGING"sv},
    {0x4E, "SCHEDULE ENTRY LOCK"sv},
    {0x50, "BASIC WINDOW COVERING"sv},
    {0x51, "MTP WINDOW COVERING"sv},
    {0x5B, "CENTRAL SCENE"sv},
    {0x60, "MULTI INSTANCE"sv},
    {0x62, "DOOR LOCK"sv},
    {0x63, "USER CODE"sv},
    {0x66, "BARRIER_OPERATOR"sv},  // [sic] the underscore
    {0x70, "CONFIGURATION"sv},
    {0x71, "ALARM"sv},
    {0x72, "MANUFACTURER SPECIFIC"sv},
    {0x73, "POWERLEVEL"sv},
    {0x75, "PROTECTION"sv},
    {0x76, "LOCK"sv},
    {0x77, "NODE NAMING"sv},
    {0x7A, "FIRMWARE UPDATE MD"sv},
    {0x7B, "GROUPING NAME"sv},
    {0x7C, "REMOTE ASSOCIATION ACTIVATE"sv},
    {0x7D, "REMOTE ASSOCIATION"sv},
    {0x80, "BATTERY"sv},
    {0x81, "CLOCK"sv},
    {0x82, "HAIL"sv},
    {0x84, "WAKE UP"sv},
    {0x85, "ASSOCIATION"sv},
    {0x86, "VERSION"sv},
    {0x87, "INDICATOR"sv},
    {0x88, "PROPRIETARY"sv},
    {0x89, "LANGUAGE"sv},
    {0x8A, "TIME"sv},
    {0x8B, "TIME PARAMETERS"sv},
    {0x8C, "GEOGRAPHIC LOCATION"sv},
    {0x8D, "COMPOSITE"sv},
    {0x8E, "MULTI INSTANCE ASSOCIATION"sv},
    {0x8F, "MULTI CMD"sv},
    {0x90, "ENERGY PRODUCTION"sv},
    {0x91, "MANUFACTURER PROPRIETARY"sv},
    {0x92, "SCREEN MD"sv},
    {0x93, "SCREEN ATTRIBUTES"sv},
    {0x94, "SIMPLE AV CONTROL"sv},
    {0x95, "AV CONTENT DIRECTORY MD"sv},
    {0x96, "AV RENDERER STATUS"sv},
    {0x97, "AV CONTENT SEARCH MD"sv},
    {0x98, "SECURITY"sv},
    {0x99, "AV TAGGING MD"sv},
    {0x9A, "IP CONFIGURATION"sv},
    {0x9B, "ASSOCIATION COMMAND CONFIGURATION"sv},
    {0x9C, "SENSOR ALARM"sv},
    {0x9D, "SILENCE ALARM"sv},
    {0x9E, "SENSOR CONFIGURATION"sv},
    {0xEF, "MARK"sv},
    {0xF0, "NON INTEROPERABLE"sv},
};

constexpr std::size_t kRows = std::size(kCommandClasses);
constexpr std::uint8_t kNoOperation = 0;  // the row of all numbers without a name
constexpr unsigned kNoNumber = 255;

constexpr bool rowsAreInOrder() {
  for (std::size_t i = 1; i < kRows; ++i) {
    if (kCommandClasses[i - 1].number >= kCommandClasses[i].number) return false;
  }
  return kCommandClasses[1].number == 0x20 && kCommandClasses[kRows - 1].number == 0xF0;
}
static_assert(kRows == 1 + 82 && rowsAreInOrder(), "82 command classes, ascending from the first to the last");

// Rows rather than texts: a table of pointers is eight times as large, and the loader has to touch all of it.
constexpr auto kRowOfNumber = [] {
  std::array<std::uint8_t, 256> rows{};
  for (std::uint8_t row = kNoOperation; row < kRows; ++row) rows[kCommandClasses[row].number] = row;
  return rows;
}();

// ---- name to number -------------------------------------------------------------------------------------------------

// One probe decides: a hash of the length and three characters that no two of the names share.
constexpr std::size_t kSlots = 512;

// The last factor was found by trial: one that gives every name a slot of its own, which is asserted below. A new name
// may take another one.
constexpr std::size_t hash(std::string_view name) {
  const auto at = [name](std::size_t i) { return static_cast<std::uint32_t>(static_cast<unsigned char>(name[i])); };
  const std::size_t size = name.size();
  const std::uint32_t picked = at(0) | at(size - 1) << 8 | at(size / 4) << 16;
  const std::uint32_t mixed = (picked ^ static_cast<std::uint32_t>(size) * 0x9E3779B1U) * 0x2B37D817U;
  return (mixed >> 13) % kSlots;
}

// [sic] This one name is not known by its name.
constexpr bool isKnownByName(const CommandClass& row) { return row.number != 0x66; }

constexpr auto kRowOfSlot = [] {
  std::array<std::uint8_t, kSlots> rows{};
  for (std::uint8_t row = kNoOperation; row < kRows; ++row) {
    if (isKnownByName(kCommandClasses[row])) rows[hash(kCommandClasses[row].name)] = row;
  }
  return rows;
}();
constexpr bool hasItsSlot(const CommandClass& row) {
  const CommandClass& found = kCommandClasses[kRowOfSlot[hash(row.name)]];
  return (found.number == row.number) == isKnownByName(row);
}
constexpr bool everyNameHasItsSlot() {
  bool all = true;
  for (const CommandClass& row : kCommandClasses) all = all && hasItsSlot(row);
  return all;
}
static_assert(everyNameHasItsSlot(), "no two names share a slot");

}  // namespace
}  // namespace tembra

using namespace tembra;

const char* cclassStr(unsigned char cc) { return kCommandClasses[kRowOfNumber[cc]].name.data(); }

unsigned int cclassNum(const char* name) {
  if (name == nullptr || *name == '\0') return kNoNumber;
  const std::string_view text(name);
  const CommandClass& row = kCommandClasses[kRowOfSlot[hash(text)]];
  return row.name == text ? row.number : kNoNumber;
}
