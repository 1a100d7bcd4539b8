// The types that a user may choose instead of the classified one.
#include <tembra/association.h>
#include <tembra/globals.h>

#include <cstddef>

#include "support/state_lock.h"
#include "support/text.h"

namespace tembra {
namespace {

constexpr std::size_t kMostSubTypes = 6;

struct SubTypes {
  DevType of;
  DevType list[kMostSubTypes];  // up to a 0
};

constexpr SubTypes kSubTypes[] = {
    {DEVTYPE_BINARY_SWITCH, {DEVTYPE_SIREN, DEVTYPE_BINARY_SWITCH, DEVTYPE_MULTI_SWITCH}},
    {DEVTYPE_OUTLET_SWITCH, {DEVTYPE_SIREN, DEVTYPE_BINARY_SWITCH, DEVTYPE_MULTI_SWITCH}},
    {DEVTYPE_MULTILEVEL_SWITCH, {DEVTYPE_MULTILEVEL_SWITCH, DEVTYPE_MOTOR_CONTROL, DEVTYPE_ZWAVE_DIMMER}},
    {DEVTYPE_BINARY_SENSOR,
     {DEVTYPE_ZWAVE_CONTACT_SENSOR, DEVTYPE_ZWAVE_MOTION_SENSOR, DEVTYPE_ZWAVE_TILT_SENSOR, DEVTYPE_ZWAVE_LEAK_SENSOR,
      DEVTYPE_MULTI_SENSOR}},
    {DEVTYPE_ALARM_SENSOR, {DEVTYPE_ZWAVE_LEAK_SENSOR, DEVTYPE_MULTI_SENSOR, DEVTYPE_ZWAVE_SMOKE_SENSOR}},
    {DEVTYPE_STANDARD_CIE, {DEVTYPE_STANDARD_WARNING, DEVTYPE_KEY_FOB, DEVTYPE_STANDARD_CIE}},
    {DEVTYPE_MULTILEVEL_SENSOR,
     {DEVTYPE_TEMPERATURE_SENSOR, DEVTYPE_LUMINANCE_SENSOR, DEVTYPE_HUMIDITY_SENSOR, DEVTYPE_ENERGY_METER,
      DEVTYPE_MULTI_SENSOR}},
    {DEVTYPE_METER_SWITCH, {DEVTYPE_MULTI_SWITCH, DEVTYPE_METER_SWITCH}},
    {DEVTYPE_GENERAL_THERMOSTAT, {DEVTYPE_THERMOSTAT, DEVTYPE_SETPOINT_THERMOSTAT, DEVTYPE_ZWAVE_AC_EXTENDER}},
    {DEVTYPE_NOTIFICATION_SENSOR,
     {DEVTYPE_ZWAVE_CONTACT_SENSOR, DEVTYPE_MULTI_SENSOR, DEVTYPE_ZWAVE_SMOKE_SENSOR, DEVTYPE_ZWAVE_LEAK_SENSOR,
      DEVTYPE_ZWAVE_MOTION_SENSOR}},
};

constexpr std::size_t kFewSlotsText = 10;

// The index table read as a text: types and instances up to the first 0 byte.
bool hasFewSlots(const ZwNodeInfo& node) {
  constexpr std::size_t start = offsetof(ZwNodeInfo, indexes);
  return textLength(reinterpret_cast<const char*>(&node) + start, sizeof node - start) < kFewSlotsText;
}

bool isMotor(const ZwNodeInfo& /*node*/) { return BasicFlag != 0 && MultilevelFlag != 0; }
bool isAcExtender(const ZwNodeInfo& /*node*/) { return ZwAcExtFlag != 0; }
bool isSensor(const ZwNodeInfo& node) { return SensorBinaryFlag != 0 || (BasicFlag != 0 && hasFewSlots(node)); }

struct GenericSubTypes {
  bool (*applies)(const ZwNodeInfo&);
  DevType list[kMostSubTypes];
};

// What a generic device may be, by the capabilities that its values raised; the first row that applies.
constexpr GenericSubTypes kGenericSubTypes[] = {
    {isMotor, {DEVTYPE_ZWAVE_DIMMER, DEVTYPE_MOTOR_CONTROL, DEVTYPE_ZWAVE_MOTION_SENSOR}},
    {isAcExtender, {DEVTYPE_ZWAVE_AC_EXTENDER, DEVTYPE_SETPOINT_THERMOSTAT}},
    {isSensor,
     {DEVTYPE_ZWAVE_CONTACT_SENSOR, DEVTYPE_MOTION_SENSOR, DEVTYPE_ZWAVE_LEAK_SENSOR, DEVTYPE_ZWAVE_SMOKE_SENSOR,
      DEVTYPE_ZWAVE_DIMMER, DEVTYPE_SIREN}},
};

DevType* write(const DevType (&list)[kMostSubTypes], DevType* out) {
  DevType* last = out;
  for (std::size_t i = 0; i < kMostSubTypes && list[i] != DEVTYPE_UNKNOWN; ++i) {
    last = out + i;
    *last = list[i];
  }
  return last;
}

DevType* writeGeneric(const ZwNodeInfo& node, DevType* out) {
  for (const GenericSubTypes& row : kGenericSubTypes) {
    if (row.applies(node)) return write(row.list, out);
  }
  return out;
}

}  // namespace
}  // namespace tembra

using namespace tembra;

DevType* TembraAssociation::listSubDevType(DevType type, DevType* out) {
  const StateLock lock;
  if (type == DEVTYPE_GENERIC_DEVICE) return writeGeneric(zwNodeWork, out);
  for (const SubTypes& row : kSubTypes) {
    if (row.of == type) return write(row.list, out);
  }
  *out = DEVTYPE_UNKNOWN;
  return out;
}
