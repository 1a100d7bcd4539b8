// The association state machine as the Z-Wave server's answers drive it. Its table stands in docs/state-machine.md.
#include <tembra/association.h>
#include <tembra/globals.h>

#include <cstring>

#include "assoc/default_location.h"
#include "assoc/receiver/flow.h"
#include "assoc/receiver/timeouts.h"
#include "classify/received_device.h"
#include "support/log.h"
#include "support/shared_state.h"
#include "support/text.h"

namespace tembra {
namespace {

class ZwaveFlow {
 public:
  explicit ZwaveFlow(const Flow& flow) : flow_(flow), assoc_(flow.assoc), node_(flow.assoc.zwNodeRx.nodeId) {}

  void handle() {
    switch (static_cast<AssocState>(assoc_.assocState)) {
      case ASSOC:
        return addAnswered();
      case ZW_ASSOC:
        return nodeIdentified();
      case ZW_ASSOC_QUERY:
        return nodeDescribed();
      case DEASSOC:
        return removeAnswered();
      case ASSOC_RESET:
        return resetDone();
      case ZW_REMOVING:
        return removalDone();
      case ASSOC_IDLE:
      case ZB_ADDED:
        break;
    }
    setState(assoc_, ASSOC_IDLE);
  }

 private:
  void addAnswered();
  void nodeIdentified();
  void nodeDescribed();
  void removeAnswered();
  void resetDone();
  void removalDone();

  void takeOver();
  void addFailed();
  void offerTypes();
  void announceCreated();
  void nothingRemoved();
  void knownNodeRemoved();
  void unknownNodeRemoved();
  void awaitRemovalDone();

  [[nodiscard]] bool tell(AssocEvent& event, AssocEventCode code) const {
    return flow_.tell(event, code, SERVER_ZWAVE);
  }
  void progress(const char* text) const { log(assoc_, Level::kProgress, text); }
  void finish() {
    setIdle(true);
    setState(assoc_, ASSOC_IDLE);
  }

  const Flow& flow_;
  TembraAssociation& assoc_;
  unsigned char node_;
};

// This radio has answered first: the other one stops waiting.
void ZwaveFlow::takeOver() {
  assoc_.activeRadio = SERVER_ZWAVE;
  assoc_.sendCancelTo(cancel_zigbee);
  assoc_.cancelTarget = cancel_zwave;
}

void ZwaveFlow::addFailed() {
  if (!tell(flow_.events.a, EVENT_ADD_FAILED)) return;
  finish();
  log(assoc_, Level::kWarning, TEMBRA_LOG_PREFIX "Association failed (Z-wave)");
}

// [sic] The banners carry no prefix. A node 0 passes here and fails in the next state only.
void ZwaveFlow::addAnswered() {
  progress("................. ASSOC ...................");
  takeOver();
  if (node_ == NODE_FAILED) return addFailed();
  setState(assoc_, ZW_ASSOC);
  setCommandType("AddingSensor");
  if (!tell(flow_.events.a, EVENT_ADDING)) return;
  progress(TEMBRA_LOG_PREFIX "Adding sensor (Z-wave)");
  flow_.timeoutSeconds = kAddingTimeout;
  setIdle(false);
  progress(TEMBRA_LOG_PREFIX "timeout set to 60 sec...");
}

// The database is asked first, whatever the node.
void ZwaveFlow::nodeIdentified() {
  progress("................. ZW_ASSOC ...................");
  const bool known = assoc_.ZW_checkNodeExists() != 0;
  if (!flow_.connection.isOpen()) return;
  if (known) {
    if (!tell(flow_.events.a, EVENT_ALREADY_ADDED)) return;
    finish();
    return progress(TEMBRA_LOG_PREFIX "Z-wave sensor already joined");
  }
  if (node_ == NODE_FAILED || node_ == NODE_NONE) return addFailed();
  setState(assoc_, ZW_ASSOC_QUERY);
  setCommandType("GettingInfo");
  if (!tell(flow_.events.a, EVENT_GETTING_INFO)) return;
  progress(TEMBRA_LOG_PREFIX "Getting sensor info (Z-wave)");
  flow_.timeoutSeconds = kGettingInfoTimeout;
  progress(TEMBRA_LOG_PREFIX "ZW_ASSOC_QUERY:timeout set to 180 secs");
}

void ZwaveFlow::nodeDescribed() {
  progress("................. ZW_ASSOC_QUERY ...................");
  assoc_.zwNodeWork = assoc_.zwNodeRx;
  DevId = assoc_.calculateDevId();
  if (!flow_.connection.isOpen()) return;
  if (!classifyNode(assoc_)) {
    log(assoc_, Level::kWarning, TEMBRA_LOG_PREFIX "zw_createDevice is unsuccessful (Z-wave)");
    if (tell(flow_.events.a, EVENT_ADD_FAILED)) finish();
    return;
  }
  progress(TEMBRA_LOG_PREFIX "zw_createDevice is successful (Z-wave)");
  DeviceReport& report = flow_.events.report;
  const auto proposed = static_cast<DevType>(assoc_.zwNodeWork.proposedType);
  report.type = proposed;
  assoc_.zwNodeWork.finalType = proposed;
  std::memset(report.subTypes, 0, sizeof report.subTypes);
  assoc_.listSubDevType(proposed, report.subTypes);
  report.subTypes[0] != DEVTYPE_UNKNOWN ? offerTypes() : announceCreated();
}

// The time-out stays: the front end's choice and naming have the rest of it.
void ZwaveFlow::offerTypes() {
  AssocEvent& event = flow_.events.b;
  flow_.events.reportIntoB();
  if (!tell(event, EVENT_SELECT_TYPE)) return;
  setCommandType("SelectDeviceType");
  assoc_.zwNodeWork.finalType = assoc_.devType;
  event = AssocEvent{};
  setState(assoc_, ASSOC_IDLE);
}

// The type reported is the pending device's, which classification of a Z-Wave node does not write [sic].
void ZwaveFlow::announceCreated() {
  DeviceReport& report = flow_.events.report;
  report = DeviceReport{};
  copyText(report.name, assoc_.devName);
  copyText(assoc_.devLocation, kDefaultLocation);
  copyText(report.location, kDefaultLocation);
  report.type = assoc_.devType;
  flow_.events.reportIntoB();
  if (!tell(flow_.events.b, EVENT_CREATED)) return;
  setCommandType("EditNameLocation");
  setState(assoc_, ASSOC_IDLE);
}

// The node is tested first, then the database is asked: the other way round than for an add.
void ZwaveFlow::removeAnswered() {
  progress("................. DEASSOC ...................");
  takeOver();
  if (node_ == NODE_NONE || node_ == NODE_FAILED) return nothingRemoved();
  const bool known = assoc_.ZW_checkNodeExists() != 0;
  if (!flow_.connection.isOpen()) return;
  known ? knownNodeRemoved() : unknownNodeRemoved();
}

void ZwaveFlow::nothingRemoved() {
  if (!tell(flow_.events.b, EVENT_REMOVED_UNKNOWN)) return;
  setState(assoc_, ASSOC_IDLE);
  LogLine(assoc_, Level::kProgress, TEMBRA_LOG_PREFIX "111 Unknown Sensor Removed (Z-wave) and Node:") << node_;
  setIdle(true);
}

void ZwaveFlow::knownNodeRemoved() {
  setState(assoc_, ZW_REMOVING);
  assoc_.ZW_removeNode();
  if (!flow_.connection.isOpen()) return;
  DeviceReport& report = flow_.events.report;
  copyText(report.removedName, assoc_.removedName);
  report.removedId = assoc_.removedId;
  flow_.events.reportIntoB();
  if (!tell(flow_.events.b, EVENT_REMOVED)) return;
  LogLine(assoc_, Level::kProgress, TEMBRA_LOG_PREFIX)
      << fieldText(assoc_.removedName, sizeof assoc_.removedName - 1) << " is Removing (Z-wave)";
  awaitRemovalDone();
}

void ZwaveFlow::unknownNodeRemoved() {
  if (!tell(flow_.events.b, EVENT_REMOVED_UNKNOWN)) return;
  setState(assoc_, ZW_REMOVING);
  LogLine(assoc_, Level::kProgress, TEMBRA_LOG_PREFIX "222 Unknown Sensor Removed (Z-wave) and Node:") << node_;
  awaitRemovalDone();
}

void ZwaveFlow::awaitRemovalDone() {
  flow_.timeoutSeconds = kRemovingTimeout;
  setIdle(false);
  setCommandType("RemoveDevice");
  progress(TEMBRA_LOG_PREFIX "timeout set to 20 sec");
}

void ZwaveFlow::resetDone() {
  setState(assoc_, ASSOC_IDLE);
  progress(TEMBRA_LOG_PREFIX "Reset Success");
  setIdle(true);
}

void ZwaveFlow::removalDone() {
  progress(TEMBRA_LOG_PREFIX " Sensor Removed (Z-wave)");  // [sic] the blank after the prefix
  setIdle(true);
  assoc_.cancelTarget = 0;
  setState(assoc_, ASSOC_IDLE);
}

}  // namespace

void handleZwave(const Flow& flow) {
  std::memcpy(&flow.assoc.zwNodeRx, flow.datagram, sizeof flow.assoc.zwNodeRx);
  log(flow.assoc, Level::kProgress, TEMBRA_LOG_PREFIX "Received Packet from Z-wave");
  ZwaveFlow(flow).handle();
}

}  // namespace tembra
