// Index slots of a generic Z-Wave device, renamed for the type that the user chose.
#include <tembra/association.h>

#include <cstddef>

#include "support/log.h"
#include "support/state_lock.h"

namespace tembra {
namespace {

struct Rewrite {
  DevType chosen;
  IndexType from;
  IndexType to;
};

constexpr Rewrite kRewrites[] = {
    {DEVTYPE_ZWAVE_SMOKE_SENSOR, INDEX_BASIC, INDEX_SMOKE},
    {DEVTYPE_ZWAVE_LEAK_SENSOR, INDEX_BASIC, INDEX_LEAK},
    {DEVTYPE_ZWAVE_CONTACT_SENSOR, INDEX_BINARY_SENSOR, INDEX_CONTACT},
    {DEVTYPE_ZWAVE_MOTION_SENSOR, INDEX_BINARY_SENSOR, INDEX_MOTION},
    {DEVTYPE_SIREN, INDEX_SWITCH, INDEX_SIREN},
    {DEVTYPE_SETPOINT_THERMOSTAT, INDEX_BINARY_SENSOR, INDEX_MOTION},  // [sic]
    {DEVTYPE_MOTOR_CONTROL, INDEX_BASIC, INDEX_MOTOR_BASIC},
    {DEVTYPE_MOTOR_CONTROL, INDEX_LEVEL, INDEX_MOTOR_LEVEL},
    {DEVTYPE_MOTOR_CONTROL, INDEX_SWITCH, INDEX_MOTOR_SWITCH},
    {DEVTYPE_ZWAVE_AC_EXTENDER, INDEX_THERMOSTAT_MODE, INDEX_AC_EXTENDER_MODE},
    {DEVTYPE_ZWAVE_AC_EXTENDER, INDEX_HEATING_SETPOINT, INDEX_AC_EXTENDER_HEATING},
    {DEVTYPE_ZWAVE_AC_EXTENDER, INDEX_COOLING_SETPOINT, INDEX_AC_EXTENDER_COOLING},
    {DEVTYPE_ZWAVE_AC_EXTENDER, INDEX_FAN_MODE, INDEX_AC_EXTENDER_FAN},
    {DEVTYPE_ZWAVE_DIMMER, INDEX_LEVEL, INDEX_DIMMER_LEVEL},
};

}  // namespace
}  // namespace tembra

using namespace tembra;

void TembraAssociation::GenericIndexType(DevType type) {
  const StateLock lock;
  for (const Rewrite& rewrite : kRewrites) {
    if (rewrite.chosen == type) ChangeIndexType(rewrite.from, rewrite.to);
  }
}

// The record's last byte is the type of an entry, too, whose instance has no room.
void TembraAssociation::ChangeIndexType(IndexType from, IndexType to) {
  const StateLock lock;
  auto* record = reinterpret_cast<unsigned char*>(&zwNodeWork);
  for (std::size_t at = offsetof(ZwNodeInfo, indexes); at < sizeof zwNodeWork; at += sizeof(ZwIndexEntry)) {
    if (record[at] == INDEX_NONE) return;
    if (record[at] != from) continue;
    record[at] = static_cast<unsigned char>(to);
    log(*this, Level::kDetail, "ChangeIndexType:: IndexType Found");  // [sic] no prefix
    return;
  }
}
