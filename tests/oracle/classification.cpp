// What the readings of the rules say of a node or a device, put where the service keeps it.
#include <bit>

#include "formatted.h"
#include "model.h"
#include "node_reading.h"
#include "offsets.h"
#include "zigbee_reading.h"

namespace oracle {

bool Model::classifyZwave() {
  nextDeviceId();
  NodeOutcome node;
  node.work = std::bit_cast<ZwNodeInfo>(zwWork.bytes);
  node.classifiedType = classifiedType;
  node.name = devName.text();
  node.raised = raised;
  node = readNode(std::bit_cast<ZwNodeInfo>(zwReceived.bytes), node, deviceId);
  zwWork.bytes = std::bit_cast<decltype(zwWork.bytes)>(node.work);
  classifiedType = node.classifiedType;
  devName.setText(node.name);
  raised = node.raised;
  for (const std::string& each : node.formatted) scratch.setText(each);
  for (const std::string& each : node.log) logged(each);
  return node.result == 1;
}

int Model::classifyZigbee() {
  zwWork.setNumber(kNodeKind, 1);
  nextDeviceId();
  log(0, "libTembraAssoc:collecting info of zigbee device");
  devName.setText("UnknownDevice #" + std::to_string(deviceId));
  DescribedDevice device{zbDevice, devName, classifiedType};
  const ZigbeeOutcome outcome = readDescription(device, deviceId);
  zbDevice = device.record;
  devName = device.name;
  classifiedType = device.classifiedType;
  for (const std::string& each : outcome.formatted) scratch.setText(each);
  for (const std::string& each : outcome.log) logged(each);
  return outcome.result;
}

bool Model::listSubTypes(int type) {
  report.clear(kReportList, kReportListLength);
  const Types list = subTypesOf(type, raised, zwWork.text(kNodeIndexes).size());
  for (std::size_t i = 0; i < list.size(); ++i) report.setNumber(kReportList + 4 * i, list[i]);
  return report.number(kReportList) != 0;
}

}  // namespace oracle
