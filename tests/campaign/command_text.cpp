#include "campaign/command_text.h"

#include <tembra/records.h>
#include <tembra/vocabulary.h>

#include <algorithm>
#include <cstring>
#include <utility>

namespace campaign {
namespace {

template <typename Data>
Data dataOf(const Datagram& datagram) {
  Data data{};
  std::memcpy(&data, datagram.bytes.data(), std::min(sizeof data, datagram.bytes.size()));
  return data;
}

std::string zwaveText(const ZwaveCommand& command) {
  if (command.operation == 1 && command.controllerCommand == 1) return "zwave add";
  if (command.operation == 1 && command.controllerCommand == 4) return "zwave remove";
  if (command.operation == 4) return "zwave cancel";
  return command.operation == 5 ? "zwave reset" : "zwave ?";
}

std::string zigbeeText(const ZigbeeCommand& command) {
  constexpr std::pair<const char*, const char*> texts[] = {{"option button1", "zigbee add"},
                                                           {" ", "zigbee remove"},
                                                           {"network pjoin 0", "zigbee cancel"},
                                                           {"n l", "zigbee reset, first half"},
                                                           {"option button0", "zigbee reset, second half"}};
  for (const auto& [wording, text] : texts) {
    if (std::strncmp(command.command, wording, sizeof command.command) == 0) return text;
  }
  return "zigbee ?";
}

std::string haText(const HaNotice& notice) {
  if (notice.recordKind == RECORD_ZWAVE) {
    ZwNodeInfo node;
    std::memcpy(&node, notice.record, sizeof node);
    return "ha zwave " + std::to_string(node.nodeId) + (node.requestMark == 255 ? " added" : " removed");
  }
  if (std::memcmp(notice.record, "removeAllDevices", sizeof "removeAllDevices") == 0) return "ha remove all";
  ZbDeviceInfo device;
  std::memcpy(&device, notice.record, sizeof device);
  return "ha zigbee " + std::to_string(device.shortAddress) + (device.msgCode == 10 ? " added" : " removed");
}

}  // namespace

std::string commandText(const Datagram& datagram) {
  if (datagram.to == kZwaveAddress) return zwaveText(dataOf<ZwaveCommand>(datagram));
  if (datagram.to == kZigbeeAddress) return zigbeeText(dataOf<ZigbeeCommand>(datagram));
  if (datagram.to == kHaAddress) return haText(dataOf<HaNotice>(datagram));
  if (datagram.to == kHueAddress) {
    const auto command = dataOf<HueCommand>(datagram);
    return "hue " + std::to_string(command.command) + " " + command.bridgeId + " " + command.argument;
  }
  const auto command = dataOf<NestCommand>(datagram);
  return "nest " + std::to_string(command.command) + " " + command.text;
}

}  // namespace campaign
