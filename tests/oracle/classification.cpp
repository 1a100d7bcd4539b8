#include "devices.h"
#include "formatted.h"
#include "model.h"
#include "offsets.h"
#include "sub_types.h"

namespace oracle {
namespace {

std::string hex(int value) { return formatted("0x%.2x", static_cast<unsigned>(value)); }

}  // namespace

bool Model::classifyZwave() {
  const ZwaveDevice* device = find(zwReceived);
  if (device == nullptr) {
    unforeseen = true;
    return false;
  }
  const std::string node = std::to_string(zwReceived.byte(0));
  nextDeviceId();
  std::string classes = "node " + node + " Supported Command Classes:";
  for (std::size_t i = 1; i <= device->classes.size(); ++i) {
    zwWork.setByte(i, zwReceived.byte(i));
    zwWork.setByte(i + 1, 0);
    classes += hex(zwReceived.byte(i)) + " ";
  }
  log(0, classes);
  if (zwReceived.byte(kNodeBasic) == 0) {
    log(2, "libTembraAssoc:BasicType is 0,so skipping Device addition");
    return false;
  }
  zwWork.setNumber(kNodeProposedType, device->type);
  for (const char* text : device->lines) log(0, text);
  if (device->type == kGenericDevice) deriveIndexes(device->values);
  zwWork.setNumber(kNodeKind, 2);
  zwWork.setByte(0, zwReceived.byte(0));
  classifiedType = device->type;
  devName.setText(typeName(device->type) + " #" + std::to_string(deviceId));
  zwWork.setText(devName.text(), kNodeName, kTextField);
  zwWork.setByte(kNodeMark, 255);
  log(0, "libTembraAssoc:Device Basic Type:" + hex(device->basic) + ", Generic Type:" + hex(device->generic) +
             ", Specific Type:" + hex(device->specific) + ",Nodeid:" + node);
  return true;
}

// A value that becomes nothing leaves the first entry empty, but later ones leave no gap.
void Model::deriveIndexes(const std::vector<ZwaveValue>& values) {
  std::size_t entry = 0;
  const auto type = [](std::size_t k) { return kNodeIndexes + 2 * k; };
  zwWork.setByte(type(0), 0);
  for (const auto& [commandClass, index, instance, kind] : values) {
    log(3, formatted("libTembraAssoc:GenericDevice: command class: %d command index %d", commandClass, index));
    zwWork.setByte(type(entry), kind);
    if (kind != 0) {
      zwWork.setByte(type(entry) + 1, instance);
      if (kind == 2) sensorBinaryFlag = 1;
      if (kind == 14) basicFlag = 1;
      if (kind == 17) multilevelFlag = 1;
      if (kind == 35 || kind == 37 || kind == 38 || kind == 39) acExtenderFlag = 1;
      log(3, formatted("libTembraAssoc:GenericDevice: cmdclass %d index %d instance : %d Enum: %d ", commandClass,
                       index, instance, kind));
    } else {
      log(3,
          formatted("libTembraAssoc:GenericDevice: Enum is not defined for : cmdclass %d ind %d", commandClass, index));
      if (entry > 0) --entry;
    }
    ++entry;
    zwWork.setByte(type(entry), 0);
  }
}

int Model::classifyZigbee() {
  const ZigbeeDevice* device = find(zbDevice);
  if (device == nullptr) {
    unforeseen = true;
    return -1;
  }
  zwWork.setNumber(kNodeKind, 1);
  nextDeviceId();
  log(0, "libTembraAssoc:collecting info of zigbee device");
  for (const char* text : device->lines) log(0, text);
  classifiedType = device->classifiedType;
  const std::string number = " #" + std::to_string(deviceId);
  devName.setText("UnknownDevice" + number);
  for (const char* word : device->names) devName.setText(word + number);
  zbDevice.setByte(kZigbeeType, device->type);
  writeIndexes(*device);
  if (device->result != 0) return device->result;
  log(0, formatted("libTembraAssoc:No. of clusters found:%d and indexes:%zu zonetype:%x", device->counted,
                   device->entries.size(), static_cast<unsigned>(device->zone)));
  return 0;
}

// A device that is given up gets neither an end mark nor the number of its entries.
void Model::writeIndexes(const ZigbeeDevice& device) {
  std::size_t at = kZigbeeIndexCount;
  int endpoint = -1;
  for (const ZigbeeEntry& entry : device.entries) {
    at += 2;
    endpoint = entry.endpoint;
    zbDevice.setByte(at, entry.type);
    if (endpoint != -1) zbDevice.setByte(at + 1, endpoint);
  }
  for (int i = 1; i <= device.endpointsBehind; ++i)
    zbDevice.setByte(at + 2 * static_cast<std::size_t>(i) + 1, endpoint);
  if (device.result != 0) return;
  zbDevice.setByte(at + 2, 255);
  zbDevice.setByte(kZigbeeIndexCount, static_cast<int>(device.entries.size()));
}

bool Model::listSubTypes(int type) {
  report.clear(kReportList, kReportListLength);
  const Capabilities raised{basicFlag, multilevelFlag, sensorBinaryFlag, acExtenderFlag};
  const Types list = subTypesOf(type, raised, zwWork.text(kNodeIndexes).size());
  for (std::size_t i = 0; i < list.size(); ++i) report.setNumber(kReportList + 4 * i, list[i]);
  return report.number(kReportList) != 0;
}

}  // namespace oracle
