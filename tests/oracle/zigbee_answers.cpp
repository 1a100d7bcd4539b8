#include "model.h"
#include "offsets.h"

namespace oracle {
void Model::zigbeeAnswer() {
  std::copy_n(buffer.bytes.begin(), zbDevice.bytes.size(), zbDevice.bytes.begin());
  if (state == 1) zigbeeAdding(zbDevice.byte(kZigbeeMessage));
  if (state == 2) zigbeeLeaving();
}

void Model::zigbeeAdding(int status) {
  switch (status) {
    case 1:
      return zigbeeFound();
    case 6:
      return zigbeeDescribing();
    case 2:
    case 11:
      return zigbeeFailed(status);
    case 10:
      return zigbeeDescribed();
    case 3:
      return;
    default:
      state = 0;
  }
}

void Model::zigbeeFound() {
  activeRadio = kZigbee;
  cancel(2);
  cancelTarget = 1;
  log(0, "libTembraAssoc: Device got found (Zigbee)");
  report.setNumber(kReportStatus, 1);
  report.setText(R"({"CommandType":"AddingDevice","MobileInternalIndex":""})", kReportJson);
  eventB.put(report, kPayload);
  event(eventB, 3, kZigbee);
  cmdtype.setText("AddingSensor");
  idle = 0;
  setTimeout(60, "libTembraAssoc:timeout set to 60 sec");
}

void Model::zigbeeDescribing() {
  log(0, "libTembraAssoc:Getting Sensor info (Zigbee)");
  report.setNumber(kReportStatus, 6);
  report.setText(R"({"CommandType":"GettingInfo","MobileInternalIndex":""})", kReportJson);
  eventB.put(report, kPayload);
  event(eventB, 5, kZigbee);
  cmdtype.setText("GettingInfo");
  idle = 0;
  setTimeout(180, "libTembraAssoc:timeout set to 180 sec");
}

void Model::zigbeeFailed(int status) {
  state = 0;
  log(1, "libTembraAssoc:Association failed (Zigbee)");
  report.setNumber(kReportStatus, status);
  report.setByte(kReportFailure, 0);
  report.setText(R"({"CommandType":"AddDevice","MobileInternalIndex":"","Success":"false","Reason":"AddingFailed"})",
                 kReportJson);
  eventB.put(report, kPayload);
  event(eventB, 9, kZigbee);
  idle = 1;
}

void Model::zigbeeDescribed() {
  if (classifyZigbee() == 0) {
    devType = zbDevice.byte(kZigbeeType);
    report.setNumber(kReportType, devType);
    if (listSubTypes(classifiedType)) {
      report.setNumber(kReportStatus, 10);
      offerTypes(kZigbee);
      zbDevice.setByte(kZigbeeType, devType);
    } else {
      announceDevice(kZigbee);
    }
  }
  logFormatted(
      0, "libTembraAssoc:Sensor got Associated " + std::to_string(deviceId) + " name " + devName.text() + " (Zigbee)");
  state = 8;
}

void Model::zigbeeLeaving() {
  int status = zbDevice.byte(kZigbeeMessage);
  findZigbeeDevice();
  if (status != 2 && status != 12) return;
  if (zbDevice.byte(kZigbeeMessage) == 12) status = 12;
  activeRadio = kZigbee;
  cancel(2);
  if (status == 2) {
    zbDevice.setByte(kZigbeeMessage, 2);
    eventC.setNumber(0, 0);
    eventC.put(zbDevice, 4);
    sendToHa(0, {zbDevice.bytes.begin(), zbDevice.bytes.end()});
    logFormatted(0, "libTembraAssoc:Sensor name " + removedName.text() + " is removed (Zigbee)");
    report.setText(removedName.text(), kReportRemovedName, kTextField);
    report.setNumber(kReportRemovedId, removedId);
    eventB.put(report, kPayload);
    event(eventB, 11, kZigbee);
  } else {
    log(0, "libTembraAssoc:Unknown Sensor removed (Zigbee)");
    event(eventB, 12, kZigbee);
  }
  idle = 1;
  cancelTarget = 0;
  state = 0;
}

}  // namespace oracle
