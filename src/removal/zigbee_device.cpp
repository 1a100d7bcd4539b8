// Finding out which ZigBee device left.
#include "removal/zigbee_device.h"

#include "database/device_database.h"
#include "support/log.h"
#include "support/state_lock.h"
#include "support/text.h"

namespace tembra {
namespace {

constexpr int kNotFound = -1;

}  // namespace

ZigbeeLookup findZigbeeDevice(TembraAssociation& assoc, unsigned short shortAddress) {
  bool found = false;
  DatabaseSession database;
  if (!database.isOpen()) return {database.deletionResult(), false};
  database.forEachDevice([&](const StoredDevice& device) {
    if (!device.hasZigbeeAddress(shortAddress)) return;
    const StateLock applying;
    copyText(assoc.removedName, device.record().name);
    assoc.removedId = device.record().id;
    LogLine(assoc, Level::kProgress, TEMBRA_LOG_PREFIX "Removing zigbee device 0x") << Hex{shortAddress, 2};
    found = true;
  });
  return {found ? 0 : kNotFound, !found};
}

}  // namespace tembra

using namespace tembra;

int TembraAssociation::zb_removeNode(unsigned short shortAddress) {
  const StateLock lock;
  const ZigbeeLookup lookup = findZigbeeDevice(*this, shortAddress);
  if (lookup.unknown) zbDevice.msgCode = ZIGBEE_REMOVED_UNKNOWN;
  return lookup.result;
}
