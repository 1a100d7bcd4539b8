// The association state machine as the ZigBee server's answers drive it, by the status byte of the answer.
#include <tembra/association.h>
#include <tembra/globals.h>

#include <cstring>

#include "assoc/default_location.h"
#include "assoc/receiver/flow.h"
#include "assoc/receiver/timeouts.h"
#include "classify/received_device.h"
#include "removal/zigbee_device.h"
#include "support/log.h"
#include "support/shared_state.h"
#include "support/text.h"

namespace tembra {
namespace {

class ZigbeeFlow {
 public:
  explicit ZigbeeFlow(const Flow& flow) : flow_(flow), assoc_(flow.assoc), report_(flow.events.report) {}

  void handle() {
    if (assoc_.assocState == ASSOC) return addAnswered();
    if (assoc_.assocState == DEASSOC) return removeAnswered();
  }

 private:
  void addAnswered();
  void deviceFound();
  void gettingInfo();
  void addFailed();
  void infoComplete();
  bool deviceCreated();
  bool offerTypes();
  bool announceCreated();

  void removeAnswered();
  void takeOver();
  void deviceRemoved();
  void unknownDeviceRemoved();
  void finishRemoval();
  void notifyHaServer();

  template <std::size_t Size>
  [[nodiscard]] bool tellStatus(AssocEventCode code, const char (&json)[Size]) {
    report_.status = assoc_.zbDevice.msgCode;
    std::memcpy(report_.json, json, Size);
    return tellReport(code);
  }
  [[nodiscard]] bool tellReport(AssocEventCode code) {
    flow_.events.reportIntoB();
    return flow_.tell(flow_.events.b, code, SERVER_ZIGBEE);
  }
  void progress(const char* text) const { log(assoc_, Level::kProgress, text); }

  const Flow& flow_;
  TembraAssociation& assoc_;
  DeviceReport& report_;
};

void ZigbeeFlow::addAnswered() {
  switch (assoc_.zbDevice.msgCode) {
    case ZIGBEE_FOUND:
      return deviceFound();
    case ZIGBEE_GETTING_INFO:
      return gettingInfo();
    case ZIGBEE_ADD_FAILED:
    case ZIGBEE_ADD_FAILED_TOO:
      return addFailed();
    case ZIGBEE_INFO_COMPLETE:
      return infoComplete();
    case ZIGBEE_STILL_ADDING:
      return;
    default:
      // Any other status abandons the add without a word; `idle` stays 0 until the time-out.
      setState(assoc_, ASSOC_IDLE);
  }
}

// This radio has answered first: the other one stops waiting.
void ZigbeeFlow::takeOver() {
  assoc_.activeRadio = SERVER_ZIGBEE;
  assoc_.sendCancelTo(cancel_zwave);
}

void ZigbeeFlow::deviceFound() {
  takeOver();
  assoc_.cancelTarget = cancel_zigbee;
  setState(assoc_, ASSOC);
  progress(TEMBRA_LOG_PREFIX " Device got found (Zigbee)");  // [sic] the blank after the prefix
  if (!tellStatus(EVENT_ADDING, R"({"CommandType":"AddingDevice","MobileInternalIndex":""})")) return;
  setCommandType("AddingSensor");
  setIdle(false);
  flow_.timeoutSeconds = kAddingTimeout;
  progress(TEMBRA_LOG_PREFIX "timeout set to 60 sec");
}

void ZigbeeFlow::gettingInfo() {
  progress(TEMBRA_LOG_PREFIX "Getting Sensor info (Zigbee)");
  if (!tellStatus(EVENT_GETTING_INFO, R"({"CommandType":"GettingInfo","MobileInternalIndex":""})")) return;
  setCommandType("GettingInfo");
  setIdle(false);
  flow_.timeoutSeconds = kGettingInfoTimeout;
  progress(TEMBRA_LOG_PREFIX "timeout set to 180 sec");
}

void ZigbeeFlow::addFailed() {
  setState(assoc_, ASSOC_IDLE);
  log(assoc_, Level::kWarning, TEMBRA_LOG_PREFIX "Association failed (Zigbee)");
  report_.failure = 0;
  if (!tellStatus(
          EVENT_ADD_FAILED,
          R"({"CommandType":"AddDevice","MobileInternalIndex":"","Success":"false","Reason":"AddingFailed"})")) {
    return;
  }
  setIdle(true);
}

// A device that cannot be created ends like a created one, but without any event: the time-out will tell.
void ZigbeeFlow::infoComplete() {
  assoc_.zwNodeWork.deviceKind = DEVICE_ZIGBEE;
  DevId = assoc_.calculateDevId();
  if (!flow_.connection.isOpen()) return;
  const bool created = classifyZigbeeDevice(assoc_) == 0;
  if (created && !deviceCreated()) return;
  LogLine(assoc_, Level::kProgress, TEMBRA_LOG_PREFIX "Sensor got Associated ")
      << DevId << " name " << fieldText(assoc_.devName, sizeof assoc_.devName - 1) << " (Zigbee)";
  setState(assoc_, ZB_ADDED);
}

// The list is asked for by the type that classification proposes, which is 0 unless the device has an IAS zone.
bool ZigbeeFlow::deviceCreated() {
  assoc_.devType = assoc_.zbDevice.devType;
  report_.type = assoc_.devType;
  std::memset(report_.subTypes, 0, sizeof report_.subTypes);
  assoc_.listSubDevType(static_cast<DevType>(assoc_.classifiedType), report_.subTypes);
  return report_.subTypes[0] != DEVTYPE_UNKNOWN ? offerTypes() : announceCreated();
}

bool ZigbeeFlow::offerTypes() {
  report_.status = ZIGBEE_INFO_COMPLETE;
  if (!tellReport(EVENT_SELECT_TYPE)) return false;
  setCommandType("SelectDeviceType");
  assoc_.zbDevice.devType = static_cast<unsigned char>(assoc_.devType);
  flow_.events.b = AssocEvent{};
  return true;
}

bool ZigbeeFlow::announceCreated() {
  report_ = DeviceReport{};
  copyText(report_.name, assoc_.devName);
  copyText(assoc_.devLocation, kDefaultLocation);
  copyText(report_.location, kDefaultLocation);
  report_.type = assoc_.devType;
  if (!tellReport(EVENT_CREATED)) return false;
  setCommandType("EditNameLocation");
  return true;
}

// The look-up comes first, whatever the status, and makes the stored one "unknown" when the device is not in the
// database. Whether the answer ends the removal is decided by the received one.
void ZigbeeFlow::removeAnswered() {
  const unsigned char received = assoc_.zbDevice.msgCode;
  const ZigbeeLookup lookup = findZigbeeDevice(assoc_, assoc_.zbDevice.shortAddress);
  if (!flow_.connection.isOpen()) return;
  if (lookup.unknown) assoc_.zbDevice.msgCode = ZIGBEE_REMOVED_UNKNOWN;
  if (received != ZIGBEE_REMOVED && received != ZIGBEE_REMOVED_UNKNOWN) return;
  const bool unknown = received == ZIGBEE_REMOVED_UNKNOWN || assoc_.zbDevice.msgCode == ZIGBEE_REMOVED_UNKNOWN;
  unknown ? unknownDeviceRemoved() : deviceRemoved();
}

void ZigbeeFlow::deviceRemoved() {
  takeOver();
  notifyHaServer();
  LogLine(assoc_, Level::kProgress, TEMBRA_LOG_PREFIX "Sensor name ")
      << fieldText(assoc_.removedName, sizeof assoc_.removedName - 1) << " is removed (Zigbee)";
  copyText(report_.removedName, assoc_.removedName);
  report_.removedId = assoc_.removedId;
  if (tellReport(EVENT_REMOVED)) finishRemoval();
}

void ZigbeeFlow::unknownDeviceRemoved() {
  takeOver();
  progress(TEMBRA_LOG_PREFIX "Unknown Sensor removed (Zigbee)");
  if (flow_.tell(flow_.events.b, EVENT_REMOVED_UNKNOWN, SERVER_ZIGBEE)) finishRemoval();
}

void ZigbeeFlow::finishRemoval() {
  setIdle(true);
  assoc_.cancelTarget = 0;
  setState(assoc_, ASSOC_IDLE);
}

// The notice is built over buffer C.
void ZigbeeFlow::notifyHaServer() {
  assoc_.zbDevice.msgCode = ZIGBEE_NOTICE_REMOVED;
  HaNotice notice{};
  notice.recordKind = RECORD_ZIGBEE;
  std::memcpy(notice.record, &assoc_.zbDevice, sizeof assoc_.zbDevice);
  std::memcpy(&flow_.events.c, &notice, sizeof notice.recordKind + sizeof assoc_.zbDevice);
  assoc_.sendToServers(SERVER_HA, &notice);
}

}  // namespace

void handleZigbee(const Flow& flow) {
  std::memcpy(&flow.assoc.zbDevice, flow.datagram, sizeof flow.assoc.zbDevice);
  ZigbeeFlow(flow).handle();
}

}  // namespace tembra
