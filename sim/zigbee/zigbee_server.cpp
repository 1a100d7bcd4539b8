#include "sim/zigbee/zigbee_server.h"

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

#include "sim/core/number.h"
#include "sim/core/record_bytes.h"
#include "sim/zigbee/descriptions.h"
#include "tembra/vocabulary.h"

namespace tembra::sim {
namespace {

// The status alone tells: only an add has more than one message.
bool endsOperation(const MessageKind& /*message*/, unsigned char status) {
  constexpr ZigbeeStatus onTheWay[] = {ZIGBEE_FOUND, ZIGBEE_STILL_ADDING, ZIGBEE_GETTING_INFO, ZIGBEE_INFO_COMPLETE};
  return std::find(std::begin(onTheWay), std::end(onTheWay), status) == std::end(onTheWay);
}

constexpr CodeByte kStatusByte{offsetof(ZbDeviceInfo, msgCode), endsOperation};

Answer statusAnswer(MessageKind kind, const std::string& text, const ZbDeviceInfo& description) {
  return {kind, text, bytesOf(description)};
}

}  // namespace

struct ZigbeeServer::Command {
  std::string_view text;
  std::string_view argument;
  std::string_view name;
  void (ZigbeeServer::*act)();
};

const ZigbeeServer::Command ZigbeeServer::kCommands[5] = {
    {"option button1", "IAS", "add a device", &ZigbeeServer::startAdding},
    {" ", "remove", "remove a device", &ZigbeeServer::startRemoving},
    {"network pjoin 0", "cancel", "cancel", &ZigbeeServer::cancel},
    {"n l", "", "reset, first half", &ZigbeeServer::beginReset},
    {"option button0", "", "reset, second half", &ZigbeeServer::endReset},
};

ZigbeeServer::ZigbeeServer(Surroundings surroundings, Answers::Manner manner, const ZigbeeCatalogue& catalogue,
                           RadioNetwork& network)
    : RadioServer(kZigbeeServer, sizeof(ZigbeeCommand), surroundings, manner, kStatusByte),
      catalogue_(catalogue),
      network_(network) {}

void ZigbeeServer::handle(Bytes datagram) {
  const auto request = recordFrom<ZigbeeCommand>(datagram);
  const std::string text = textIn(request.command);
  const std::string argument = textIn(request.argument);
  const auto* const command = std::find_if(std::begin(kCommands), std::end(kCommands), [&](const Command& row) {
    return row.text == text && row.argument == argument;
  });
  if (command == std::end(kCommands)) {
    found("an unknown command: \"" + text + "\", argument \"" + argument + "\"");
    return;
  }
  if (!zeroBehindText(request.command) || !zeroBehindText(request.argument)) {
    found("bytes of a command that must be zero are not");
  }
  heard(command->name);
  (this->*command->act)();
}

// A cancel is not answered, for the reason that the Z-Wave server has.
void ZigbeeServer::cancel() { become(Mode::kIdle, Happening::kZigbeeCancel); }

void ZigbeeServer::endReset() {
  if (begunResets_ == 0) {
    found("the second half of a reset without its first half");
    return;
  }
  --begunResets_;
  network_.clear();
  become(Mode::kIdle, Happening::kZigbeeReset);
}

Answer ZigbeeServer::failure(bool adding) const {
  if (adding) return statusAnswer(kFound, "adding failed", bareDevice(kNoAddress, ZIGBEE_ADD_FAILED_TOO));
  return statusAnswer(kLeft, "an unknown device left", bareDevice(kNoAddress, ZIGBEE_REMOVED_UNKNOWN));
}

Outcome ZigbeeServer::add(std::string_view device) {
  const auto address = network_.join(device);
  if (!address) {
    play({failure(true)});
    return {true, "adding fails: no address is free"};
  }
  const std::string who = addressText(*address);
  const ZbDeviceInfo complete = describedDevice(*address, ZIGBEE_INFO_COMPLETE, *catalogue_.find(device));
  play({statusAnswer(kFound, who + " found", bareDevice(*address, ZIGBEE_FOUND)),
        statusAnswer(kGetting, who + " is being asked", bareDevice(*address, ZIGBEE_GETTING_INFO)),
        statusAnswer(kComplete, who + " described in full", complete)});
  return {true, std::string(device) + " joins as " + who};
}

Outcome ZigbeeServer::remove(std::string_view device) {
  const auto address = network_.find(device);
  if (!address) {
    play({failure(false)});
    return {true, std::string(device) + " was not in the network"};
  }
  network_.forget(*address);
  const std::string who = addressText(*address);
  play({statusAnswer(kLeft, who + " left", bareDevice(*address, ZIGBEE_REMOVED))});
  return {true, std::string(device) + " leaves, " + who};
}

Outcome ZigbeeServer::say(const std::string& what) {
  const std::size_t end = std::min(what.find(' '), what.size());
  const int status = parseNumber(std::string_view(what).substr(0, end), 0, 255);
  const std::string device = what.substr(std::min(end + 1, what.size()));
  ZbDeviceInfo description = bareDevice(kNoAddress, status);
  if (!device.empty()) {
    const ZigbeeDevice* const entry = catalogue_.find(device);
    if (entry == nullptr) return {false, "there is no ZigBee device \"" + device + "\""};
    description = describedDevice(network_.find(device).value_or(kNoAddress), status, *entry);
  }
  const std::string text = "status " + std::to_string(status) + " of " + addressText(description.shortAddress);
  tellLibrary(bytesOf(description), text);
  return {true, text};
}

}  // namespace tembra::sim
