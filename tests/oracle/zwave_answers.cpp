#include "model.h"
#include "offsets.h"

namespace oracle {
namespace {

constexpr int kFailedNode = 255;

}  // namespace

void Model::zwaveAnswer() {
  std::copy_n(buffer.bytes.begin(), zwReceived.bytes.size(), zwReceived.bytes.begin());
  const int node = zwReceived.byte(0);
  log(0, "libTembraAssoc:Received Packet from Z-wave");
  switch (state) {
    case 1:
      return zwaveJoins(node);
    case 2:
      return zwaveLeaves(node);
    case 3:
      state = 0;
      log(0, "libTembraAssoc:Reset Success");
      idle = 1;
      return;
    case 4:
      return zwaveIdentified(node);
    case 5:
      return zwaveDescribed();
    case 6:
      return zwaveLeft();
    default:
      state = 0;
  }
}

void Model::zwaveAddFailed() {
  event(eventA, 9, kZwave);
  idle = 1;
  state = 0;
}

void Model::zwaveJoins(int node) {
  log(0, "................. ASSOC ...................");
  activeRadio = kZwave;
  cancel(1);
  cancelTarget = 2;
  if (node == kFailedNode) {
    zwaveAddFailed();
    log(1, "libTembraAssoc:Association failed (Z-wave)");
    return;
  }
  state = 4;
  cmdtype.setText("AddingSensor");
  event(eventA, 3, kZwave);
  log(0, "libTembraAssoc:Adding sensor (Z-wave)");
  timeout = 60;
  idle = 0;
  log(0, "libTembraAssoc:timeout set to 60 sec...");
}

void Model::zwaveIdentified(int node) {
  log(0, "................. ZW_ASSOC ...................");
  if (findZwaveNode()) {
    event(eventA, 4, kZwave);
    idle = 1;
    state = 0;
    log(0, "libTembraAssoc:Z-wave sensor already joined");
  } else if (node == kFailedNode || node == 0) {
    zwaveAddFailed();
    log(1, "libTembraAssoc:Association failed (Z-wave)");
  } else {
    state = 5;
    cmdtype.setText("GettingInfo");
    event(eventA, 5, kZwave);
    log(0, "libTembraAssoc:Getting sensor info (Z-wave)");
    setTimeout(180, "libTembraAssoc:ZW_ASSOC_QUERY:timeout set to 180 secs");
  }
}

void Model::zwaveDescribed() {
  log(0, "................. ZW_ASSOC_QUERY ...................");
  zwWork = zwReceived;
  if (!classifyZwave()) {
    log(1, "libTembraAssoc:zw_createDevice is unsuccessful (Z-wave)");
    zwaveAddFailed();
    return;
  }
  log(0, "libTembraAssoc:zw_createDevice is successful (Z-wave)");
  report.setNumber(kReportType, zwWork.number(kNodeProposedType));
  zwWork.setNumber(kNodeFinalType, zwWork.number(kNodeProposedType));
  if (listSubTypes(zwWork.number(kNodeProposedType))) {
    offerTypes(kZwave);
    zwWork.setNumber(kNodeFinalType, devType);
  } else {
    announceDevice(kZwave);
  }
  state = 0;
}

void Model::offerTypes(int radio) {
  eventB.put(report, kPayload);
  event(eventB, 6, radio);
  cmdtype.setText("SelectDeviceType");
  eventB.clear();
}

void Model::announceDevice(int radio) {
  report.clear();
  report.setText(devName.text(), kReportName, kTextField);
  devLocation.setText("Default");
  report.setText("Default", kReportLocation);
  report.setNumber(kReportType, devType);
  eventB.put(report, kPayload);
  event(eventB, 7, radio);
  cmdtype.setText("EditNameLocation");
}

void Model::zwaveLeaves(int node) {
  log(0, "................. DEASSOC ...................");
  activeRadio = kZwave;
  cancel(1);
  cancelTarget = 2;
  if (node == 0 || node == kFailedNode) {
    event(eventB, 12, kZwave);
    state = 0;
    logFormatted(0, "libTembraAssoc:111 Unknown Sensor Removed (Z-wave) and Node:" + std::to_string(node));
    idle = 1;
    return;
  }
  if (findZwaveNode()) {
    state = 6;
    removeZwaveNode();
    report.setText(removedName.text(), kReportRemovedName, kTextField);
    report.setNumber(kReportRemovedId, removedId);
    eventB.put(report, kPayload);
    event(eventB, 11, kZwave);
    logFormatted(0, "libTembraAssoc:" + removedName.text() + " is Removing (Z-wave)");
  } else {
    event(eventB, 12, kZwave);
    state = 6;
    logFormatted(0, "libTembraAssoc:222 Unknown Sensor Removed (Z-wave) and Node:" + std::to_string(node));
  }
  timeout = 20;
  idle = 0;
  cmdtype.setText("RemoveDevice");
  log(0, "libTembraAssoc:timeout set to 20 sec");
}

void Model::zwaveLeft() {
  log(0, "libTembraAssoc: Sensor Removed (Z-wave)");
  idle = 1;
  cancelTarget = 0;
  state = 0;
}

}  // namespace oracle
