#include "formatted.h"
#include "model.h"
#include "offsets.h"

namespace oracle {
namespace {

struct Rewrite {
  int type, from, to;
};

constexpr Rewrite kRewrites[] = {{36, 14, 15}, {37, 14, 16}, {39, 2, 4},   {41, 2, 3},  {42, 1, 13},
                                 {46, 2, 3},   {52, 14, 42}, {52, 17, 20}, {52, 1, 43}, {54, 35, 45},
                                 {54, 37, 46}, {54, 38, 47}, {54, 39, 48}, {55, 17, 19}};

std::string nameOf(const std::string& word, int id) { return word + " #" + std::to_string(id); }

}  // namespace

void Model::chooseType(int type) {
  log(0, "libTembraAssoc:inside setDevType");
  nextDeviceId();
  if (zwWork.number(kNodeProposedType) != kGenericDevice) {
    scratch.setText(typeName(type));
    devName.setText(nameOf(scratch.text(), deviceId));
    zwWork.setNumber(kNodeFinalType, type);
  } else {
    log(0, "libTembraAssoc:inside setDevType GenericDevice");
    rewriteIndexes(type);
    devName.setText(nameOf("GenericDevice", deviceId));
    zwWork.setNumber(kNodeFinalType, kGenericDevice);
  }
  devType = type;
  zbDevice.setByte(kZigbeeType, type);
  devLocation.setText("Default");
  Record<4104> own;
  own.setText(devName.text(), kPayload + kReportName, kTextField);
  own.setText("Default", kPayload + kReportLocation);
  own.setNumber(kPayload + kReportType, type);
  event(own, 7, activeRadio);
  cmdtype.setText("EditNameLocation");
}

void Model::changeType(int type) {
  log(0, "libTembraAssoc:inside setDevType2 ***");
  devType = type;
  zbDevice.setByte(kZigbeeType, type);
  zwWork.setNumber(kNodeFinalType, type);
}

void Model::setName(const std::string& name) {
  log(0, "libTembraAssoc:inside setDevName");
  devName.setText(name);
}

void Model::setLocation(const std::string& location) {
  log(0, "libTembraAssoc:inside setDevLocation");
  devLocation.setText(location);
}

void Model::rewriteIndexes(int type) {
  for (const Rewrite& row : kRewrites) {
    if (row.type == type) rewriteIndex(row.from, row.to);
  }
}

void Model::rewriteIndex(int from, int to) {
  for (std::size_t at = kNodeIndexes; at < zwWork.bytes.size(); at += 2) {
    if (zwWork.byte(at) == 0) return;
    if (zwWork.byte(at) != from) continue;
    zwWork.setByte(at, to);
    log(3, "ChangeIndexType:: IndexType Found");
    return;
  }
}

// A name may run into the location, the location not out of the record.
int Model::finish() {
  idle = 1;
  log(0, "libTembraAssoc:inside addingDone");
  logFormatted(0, "libTembraAssoc:Name:" + devName.text() + " Location:" + devLocation.text());
  if (zwWork.number(kNodeKind) != 2) {
    zbDevice.setText(devName.text(), kZigbeeName);
    zbDevice.setText(devLocation.text(), kZigbeeLocation);
    zbDevice.setByte(kZigbeeMessage, 10);
    log(0, "libTembraAssoc:Sending final addingDone packet to HA Server");
    return sendToHa(0, {zbDevice.bytes.begin(), zbDevice.bytes.end()}) ? 0 : -1;
  }
  zwWork.setText(devName.text(), kNodeName, kTextField);
  zwWork.setText(devLocation.text(), kNodeLocation, kTextField);
  const bool sent = sendToHa(2, {zwWork.bytes.begin(), zwWork.bytes.end()});
  if (sent) {
    log(0, "libTembraAssoc:Sending Packet to Haserver Success");
  } else {
    log(2, "libTembraAssoc:Sending Packet to Haserver Failed");
  }
  zwWork.clear();
  raised = {};
  return sent ? 0 : -1;
}

}  // namespace oracle
