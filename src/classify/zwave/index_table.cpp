// The index table of a generic Z-Wave node, derived from the values that the node offers.
#include <tembra/association.h>
#include <tembra/globals.h>

#include <cstring>

#include "support/log.h"
#include "support/state_lock.h"

namespace tembra {
namespace {

struct ValueMeaning {
  unsigned char commandClass;
  int firstIndex;
  int lastIndex;
  IndexType type;
};

// Command classes and indexes are the Z-Wave standard's; a value that no row names has no index type.
constexpr ValueMeaning kValueMeanings[] = {
    {0x20, 0, 255, INDEX_BASIC},              // basic
    {0x25, 0, 255, INDEX_SWITCH},             // binary switch
    {0x26, 0, 0, INDEX_LEVEL},                // multilevel switch
    {0x30, 0, 255, INDEX_BINARY_SENSOR},      // binary sensor
    {0x31, 1, 1, INDEX_TEMPERATURE},          // multilevel sensor
    {0x31, 3, 3, INDEX_ILLUMINANCE},          //
    {0x31, 5, 5, INDEX_HUMIDITY},             //
    {0x32, 0, 0, INDEX_ENERGY},               // meter
    {0x32, 8, 8, INDEX_POWER},                //
    {0x40, 0, 255, INDEX_THERMOSTAT_MODE},    // thermostat mode
    {0x42, 0, 255, INDEX_THERMOSTAT_STATE},   // thermostat operating state
    {0x43, 1, 1, INDEX_HEATING_SETPOINT},     // thermostat setpoint
    {0x43, 2, 2, INDEX_COOLING_SETPOINT},     //
    {0x44, 0, 255, INDEX_FAN_MODE},           // thermostat fan mode
    {0x5B, 0, 255, INDEX_CENTRAL_SCENE},      // central scene
    {0x62, 0, 0, INDEX_DOOR_LOCK},            // door lock
    {0x63, 1, 254, INDEX_USER_CODE},          // user code
    {0x63, 255, 255, INDEX_USER_CODE_COUNT},  //
    {0x66, 0, 255, INDEX_BARRIER},            // barrier operator
    {0x70, 27, 27, INDEX_CONFIGURATION_27},   // configuration
    {0x70, 33, 33, INDEX_CONFIGURATION_33},   //
    {0x71, 2, 2, INDEX_ALARM},                // alarm
    {0x80, 0, 255, INDEX_BATTERY},            // battery
};

IndexType meaningOf(const ZwValueTriple& value) {
  for (const ValueMeaning& row : kValueMeanings) {
    if (row.commandClass == value.commandClass && value.index >= row.firstIndex && value.index <= row.lastIndex) {
      return row.type;
    }
  }
  return INDEX_NONE;
}

struct Capability {
  IndexType type;
  unsigned char* flag;
};

constexpr Capability kCapabilities[] = {
    {INDEX_BINARY_SENSOR, &SensorBinaryFlag}, {INDEX_BASIC, &BasicFlag},
    {INDEX_THERMOSTAT_MODE, &ZwAcExtFlag},    {INDEX_HEATING_SETPOINT, &ZwAcExtFlag},
    {INDEX_COOLING_SETPOINT, &ZwAcExtFlag},   {INDEX_FAN_MODE, &ZwAcExtFlag},
    {INDEX_LEVEL, &MultilevelFlag},
};

void raiseCapability(IndexType type) {
  for (const Capability& capability : kCapabilities) {
    if (capability.type == type) *capability.flag = 1;
  }
}

// Writes into the node's index table, and drops what has no room there.
class IndexTable {
 public:
  explicit IndexTable(ZwNodeInfo& node) : node_(node) {}

  void setType(std::size_t entry, IndexType type) {
    if (entry < kRoom) node_.indexes[entry].type = static_cast<unsigned char>(type);
  }
  void setInstance(std::size_t entry, unsigned char instance) {
    if (entry < kRoom) node_.indexes[entry].instance = instance;
  }
  void end(std::size_t entry) {
    if (entry == kRoom) node_.indexesEnd = INDEX_NONE;
    setType(entry, INDEX_NONE);
  }

 private:
  static constexpr std::size_t kRoom = sizeof(ZwNodeInfo::indexes) / sizeof(ZwIndexEntry);
  ZwNodeInfo& node_;
};

}  // namespace
}  // namespace tembra

using namespace tembra;

// A value without a meaning gives its entry back, except entry 0, which then stays empty. The table goes on
// at entry 1 and reads as an empty one [sic].
void TembraAssociation::ZW_indexToEnum(unsigned char* triples) {
  const StateLock lock;
  IndexTable table(zwNodeWork);
  std::size_t entry = 0;
  table.end(entry);
  for (std::size_t i = 0; i < sizeof(ZwNodeInfo::values) / sizeof(ZwValueTriple); ++i) {
    ZwValueTriple value;
    std::memcpy(&value, triples + i * sizeof value, sizeof value);
    if (value.commandClass == 0) return;
    LogLine(*this, Level::kDetail, TEMBRA_LOG_PREFIX "GenericDevice: command class: ")
        << value.commandClass << " command index " << value.index;
    const IndexType type = meaningOf(value);
    table.setType(entry, type);
    if (type != INDEX_NONE) {
      table.setInstance(entry, value.instance);
      raiseCapability(type);
      LogLine(*this, Level::kDetail, TEMBRA_LOG_PREFIX "GenericDevice: cmdclass ")
          << value.commandClass << " index " << value.index << " instance : " << value.instance << " Enum: " << type
          << " ";
    } else {
      LogLine(*this, Level::kDetail, TEMBRA_LOG_PREFIX "GenericDevice: Enum is not defined for : cmdclass ")
          << value.commandClass << " ind " << value.index;
      if (entry > 0) --entry;
    }
    table.end(++entry);
  }
}
