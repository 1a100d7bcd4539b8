// Creating a ZigBee device, and finding out which one left.
#include <tembra/association.h>
#include <tembra/globals.h>

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
  tembra::setNumberedName(devName, "UnknownDevice", DevId);
  tembra::log(*this, Level::Progress, TEMBRA_LOG_PREFIX "collecting info of zigbee device");
  return validate_DeviceType();
}

int TembraAssociation::zb_removeNode(unsigned short shortAddress) {
  const StateLock lock;
  bool found = false;
  {
    tembra::DatabaseSession database;
    if (!database.isOpen()) return database.deletionResult();
    database.forEachDevice([&](const tembra::StoredDevice& device) {
      if (!device.hasZigbeeAddress(shortAddress)) return;
      const StateLock applying;
      tembra::copyText(removedName, device.record().name);
      removedId = device.record().id;
      tembra::logLine(*this, Level::Progress, TEMBRA_LOG_PREFIX "Removing zigbee device 0x%.2x", shortAddress);
      found = true;
    });
  }
  if (found) return 0;
  zbDevice.msgCode = kNodeNotFound;
  return kNotFound;
}
