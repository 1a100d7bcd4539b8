// Creating a ZigBee device.
#include <tembra/association.h>
#include <tembra/globals.h>

#include "classify/received_device.h"
#include "support/device_type_name.h"
#include "support/log.h"
#include "support/state_lock.h"

namespace tembra {

int classifyZigbeeDevice(TembraAssociation& assoc) {
  setNumberedName(assoc.devName, "UnknownDevice", DevId);
  log(assoc, Level::kProgress, TEMBRA_LOG_PREFIX "collecting info of zigbee device");
  return assoc.validate_DeviceType();
}

}  // namespace tembra

using namespace tembra;

int TembraAssociation::zb_createAnyDevice() {
  const StateLock lock;
  zwNodeWork.deviceKind = DEVICE_ZIGBEE;
  DevId = calculateDevId();
  return classifyZigbeeDevice(*this);
}
