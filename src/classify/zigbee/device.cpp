// Creating a ZigBee device, and finding out which one left.
#include <tembra/association.h>
#include <tembra/globals.h>

#include "classify/received_device.h"
#include "database/device_database.h"
#include "support/device_type_name.h"
#include "support/log.h"
#include "support/state_lock.h"
#include "support/text.h"

using tembra::Level;
using tembra::StateLock;

namespace {

constexpr unsigned char kNodeNotFound = 12;
constexpr int kNotFound = -1;

}  // namespace

int TembraAssociation::zb_createAnyDevice() {
  const StateLock lock;
  zwNodeWork.deviceKind = DEVICE_ZIGBEE;
  DevId = calculateDevId();
  return tembra::classifyZigbeeDevice(*this);
}

int TembraAssociation::zb_removeNode(unsigned short shortAddress) {
  const StateLock lock;
  const tembra::ZigbeeLookup lookup = tembra::findZigbeeDevice(*this, shortAddress);
  if (lookup.unknown) zbDevice.msgCode = kNodeNotFound;
  return lookup.result;
}

namespace tembra {

int classifyZigbeeDevice(TembraAssociation& assoc) {
  setNumberedName(assoc.devName, "UnknownDevice", DevId);
  log(assoc, Level::Progress, TEMBRA_LOG_PREFIX "collecting info of zigbee device");
  return assoc.validate_DeviceType();
}

ZigbeeLookup findZigbeeDevice(TembraAssociation& assoc, unsigned short shortAddress) {
  bool found = false;
  DatabaseSession database;
  if (!database.isOpen()) return {database.deletionResult(), false};
  database.forEachDevice([&](const StoredDevice& device) {
    if (!device.hasZigbeeAddress(shortAddress)) return;
    const StateLock applying;
    copyText(assoc.removedName, device.record().name);
    assoc.removedId = device.record().id;
    logLine(assoc, Level::Progress, line(TEMBRA_LOG_PREFIX "Removing zigbee device 0x") << Hex{shortAddress, 2});
    found = true;
  });
  return {found ? 0 : kNotFound, !found};
}

}  // namespace tembra
