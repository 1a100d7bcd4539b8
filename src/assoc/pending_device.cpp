// The device being added: its type, name and location, and handing it to the HA server.
#include <tembra/association.h>
#include <tembra/globals.h>

#include <cstring>

#include "assoc/default_location.h"
#include "assoc/event_delivery.h"
#include "support/device_type_name.h"
#include "support/log.h"
#include "support/shared_state.h"
#include "support/state_lock.h"
#include "support/text.h"

namespace tembra {
namespace {

void nameGenericDevice(TembraAssociation& assoc, DevType type) {
  log(assoc, Level::kProgress, TEMBRA_LOG_PREFIX "inside setDevType GenericDevice");
  assoc.GenericIndexType(type);
  setNumberedName(assoc.devName, "GenericDevice", DevId);
  assoc.zwNodeWork.finalType = DEVTYPE_GENERIC_DEVICE;
}

void nameClassifiedDevice(TembraAssociation& assoc, DevType type) {
  const DeviceTypeName name(type);
  copyCallersText(tempStr, name.text());
  setNumberedName(assoc.devName, name.text(), DevId);
  assoc.zwNodeWork.finalType = type;
}

void reportCreated(TembraAssociation& assoc, DevType type) {
  DeviceReport report{};
  copyText(report.name, assoc.devName);
  copyText(report.location, kDefaultLocation);
  report.type = type;
  AssocEvent event{};
  std::memcpy(event.payload, &report, sizeof report);
  deliver(assoc, event, EVENT_CREATED, static_cast<ServerType>(assoc.activeRadio));
}

// A ZigBee record has 32 bytes for the name and 34 for the location. A longer name runs into the location, which is
// written second; the record's last byte always ends the text.
void nameZigbeeRecord(TembraAssociation& assoc) {
  ZbDeviceInfo& device = assoc.zbDevice;
  constexpr std::size_t nameOffset = offsetof(ZbDeviceInfo, name);
  char* record = reinterpret_cast<char*>(&device);
  copyText(record + nameOffset, sizeof device - nameOffset, assoc.devName, sizeof assoc.devName);
  copyText(device.location, assoc.devLocation);
}

int handOverZigbeeDevice(TembraAssociation& assoc) {
  nameZigbeeRecord(assoc);
  assoc.zbDevice.msgCode = ZIGBEE_NOTICE_ADDED;
  HaNotice notice{};
  notice.recordKind = RECORD_ZIGBEE;
  std::memcpy(notice.record, &assoc.zbDevice, sizeof assoc.zbDevice);
  log(assoc, Level::kProgress, TEMBRA_LOG_PREFIX "Sending final addingDone packet to HA Server");
  return assoc.sendToServers(SERVER_HA, &notice);
}

void forgetZwaveDevice(TembraAssociation& assoc) {
  assoc.zwNodeWork = ZwNodeInfo{};
  SensorBinaryFlag = 0;
  ZwAcExtFlag = 0;
  BasicFlag = 0;
  MultilevelFlag = 0;
}

int handOverZwaveDevice(TembraAssociation& assoc) {
  copyText(assoc.zwNodeWork.name, assoc.devName);
  copyText(assoc.zwNodeWork.location, assoc.devLocation);
  HaNotice notice{};
  notice.recordKind = RECORD_ZWAVE;
  std::memcpy(notice.record, &assoc.zwNodeWork, sizeof assoc.zwNodeWork);
  const int result = assoc.sendToServers(SERVER_HA, &notice);
  if (result == 0) {
    log(assoc, Level::kProgress, TEMBRA_LOG_PREFIX "Sending Packet to Haserver Success");
  } else {
    log(assoc, Level::kError, TEMBRA_LOG_PREFIX "Sending Packet to Haserver Failed");
  }
  forgetZwaveDevice(assoc);
  return result;
}

}  // namespace
}  // namespace tembra

using namespace tembra;

void TembraAssociation::setDevType(DevType type) {
  const StateLock lock;
  log(*this, Level::kProgress, TEMBRA_LOG_PREFIX "inside setDevType");
  DevId = calculateDevId();
  // Asked of the Z-Wave record even while a ZigBee device is being added [sic].
  if (zwNodeWork.proposedType == DEVTYPE_GENERIC_DEVICE) {
    nameGenericDevice(*this, type);
  } else {
    nameClassifiedDevice(*this, type);
  }
  devType = type;
  zbDevice.devType = static_cast<unsigned char>(type);
  copyText(devLocation, kDefaultLocation);
  reportCreated(*this, type);
  setCommandType("EditNameLocation");
}

void TembraAssociation::setDevType2(DevType type) {
  const StateLock lock;
  log(*this, Level::kProgress, TEMBRA_LOG_PREFIX "inside setDevType2 ***");
  devType = type;
  zbDevice.devType = static_cast<unsigned char>(type);
  zwNodeWork.finalType = type;
}

void TembraAssociation::setDevName(char* name) {
  const StateLock lock;
  log(*this, Level::kProgress, TEMBRA_LOG_PREFIX "inside setDevName");
  copyCallersText(devName, name);
}

void TembraAssociation::setDevLocation(char* location) {
  const StateLock lock;
  log(*this, Level::kProgress, TEMBRA_LOG_PREFIX "inside setDevLocation");
  copyCallersText(devLocation, location);
}

int TembraAssociation::addingDone() {
  const StateLock lock;
  setIdle(true);
  log(*this, Level::kProgress, TEMBRA_LOG_PREFIX "inside addingDone");
  LogLine(*this, Level::kProgress, TEMBRA_LOG_PREFIX "Name:")
      << fieldText(devName, sizeof devName - 1) << " Location:" << fieldText(devLocation, sizeof devLocation - 1);
  return zwNodeWork.deviceKind == DEVICE_ZWAVE ? handOverZwaveDevice(*this) : handOverZigbeeDevice(*this);
}

int getDefaultDevName(DevType type, int id, char* out) {
  if (out == nullptr) return 0;
  char name[kNumberedNameSize];
  const int length = formatNumberedName(name, DeviceTypeName(type).text(), id);
  std::memcpy(out, name, static_cast<std::size_t>(length) + 1);
  return length;
}
