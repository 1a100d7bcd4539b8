#include "sim/zwave/zwave_server.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>

#include "sim/core/record_bytes.h"
#include "sim/zwave/node_blocks.h"

namespace tembra::sim {
namespace {

constexpr CodeByte kNodeByte{offsetof(ZwNodeInfo, nodeId), kFailedNode};

Answer nodeAnswer(MessageKind kind, const std::string& text, const ZwNodeInfo& block) {
  return {kind, text, bytesOf(block)};
}

std::string nodeText(int node, std::string_view text) { return "node " + std::to_string(node) + std::string(text); }

}  // namespace

// Operations and controller commands by the numbers of the Z-Wave driver.
struct ZwaveServer::Command {
  int operation;
  int controllerCommand;
  std::string_view name;
  void (ZwaveServer::*act)();
};

const ZwaveServer::Command ZwaveServer::kCommands[4] = {
    {1, 1, "add a device", &ZwaveServer::startAdding},
    {1, 4, "remove a device", &ZwaveServer::startRemoving},
    {4, 0, "cancel", &ZwaveServer::cancel},
    {5, 0, "reset", &ZwaveServer::reset},
};

ZwaveServer::ZwaveServer(Surroundings surroundings, Answers::Manner manner, const ZwaveCatalogue& catalogue,
                         ZwaveNetwork& network, IsStored isStored)
    : Daemon(kZwaveServer, sizeof(ZwaveCommand), surroundings),
      catalogue_(catalogue),
      network_(network),
      isStored_(std::move(isStored)),
      answers_(surroundings, manner, kNodeByte,
               [this](Bytes datagram, std::string_view text) { tellLibrary(datagram, text); }) {}

std::string_view ZwaveServer::mode() const {
  constexpr std::string_view names[] = {"idle", "adding", "removing"};
  return names[static_cast<int>(mode_)];
}

void ZwaveServer::handle(Bytes datagram) {
  const auto request = recordFrom<ZwaveCommand>(datagram);
  checkUnusedBytes(request);
  const auto* const command = std::find_if(std::begin(kCommands), std::end(kCommands), [&request](const Command& row) {
    return row.operation == request.operation && row.controllerCommand == request.controllerCommand;
  });
  if (command == std::end(kCommands)) {
    found("an unknown command: operation " + std::to_string(request.operation) + ", controller command " +
          std::to_string(request.controllerCommand));
    return;
  }
  heard(command->name);
  (this->*command->act)();
}

void ZwaveServer::checkUnusedBytes(const ZwaveCommand& command) {
  if (allZero(command.at0) && allZero(command.at196) && allZero(command.at216)) return;
  found("bytes of a command that must be zero are not");
}

void ZwaveServer::startAdding() {
  answers_.drop();
  mode_ = Mode::kAdding;
  surroundings().happenings.happened(Happening::kAdd);
}

void ZwaveServer::startRemoving() {
  answers_.drop();
  mode_ = Mode::kRemoving;
  surroundings().happenings.happened(Happening::kRemove);
}

// A cancel is not answered: the library may be waiting for the next operation already, and would take the answer for
// that one's.
void ZwaveServer::cancel() {
  answers_.drop();
  mode_ = Mode::kIdle;
  surroundings().happenings.happened(Happening::kCancel);
}

void ZwaveServer::reset() {
  network_.clear();
  mode_ = Mode::kIdle;
  play({nodeAnswer(kResetDone, "the network is reset", bareNode(kNoNode))});
  surroundings().happenings.happened(Happening::kReset);
}

Outcome ZwaveServer::readyForButton() const {
  if (mode_ == Mode::kIdle) return {false, "nobody listens: the Z-Wave server is neither adding nor removing"};
  if (answers_.playing()) return {false, "the Z-Wave server is busy with another device"};
  return {true, ""};
}

Outcome ZwaveServer::press(std::string_view device) {
  const ZwaveDevice* const entry = catalogue_.find(device);
  if (entry == nullptr) {
    return {false, "there is no device \"" + std::string(device) + "\"; there are " + catalogue_.labels()};
  }
  said(device, self().name, "button pressed");
  Outcome ready = readyForButton();
  if (!ready.done) return ready;
  return mode_ == Mode::kAdding ? addDevice(device, *entry) : removeDevice(device);
}

Outcome ZwaveServer::pressFailing() {
  said("a device", self().name, "button pressed, but the radio fails");
  Outcome ready = readyForButton();
  if (!ready.done) return ready;
  const bool adding = mode_ == Mode::kAdding;
  play({nodeAnswer(adding ? kJoined : kRemoved, adding ? "adding failed" : "removing failed", bareNode(kFailedNode))});
  return {true, adding ? "adding fails" : "removing fails"};
}

Outcome ZwaveServer::addDevice(std::string_view name, const ZwaveDevice& device) {
  const auto node = network_.join(name);
  if (!node) {
    play({nodeAnswer(kJoined, "adding failed: no node id is free", bareNode(kFailedNode))});
    return {true, "adding fails: no node id is free"};
  }
  std::vector<Answer> answers{nodeAnswer(kJoined, nodeText(*node, " joined"), bareNode(*node)),
                              nodeAnswer(kIdentity, nodeText(*node, " identified"), bareNode(*node))};
  if (!isStored_(*node)) {
    answers.push_back(nodeAnswer(kInfo, nodeText(*node, " described in full"), describedNode(*node, device)));
  }
  play(std::move(answers));
  return {true, std::string(name) + " joins as node " + std::to_string(*node)};
}

// A device of a foreign network leaves that one: the controller cannot name a node, and has nothing to close.
Outcome ZwaveServer::removeDevice(std::string_view name) {
  const auto node = network_.find(name);
  if (!node) {
    play({nodeAnswer(kRemoved, "a device of no known node removed", bareNode(kNoNode))});
    return {true, std::string(name) + " was not in the network"};
  }
  network_.forget(*node);
  play({nodeAnswer(kRemoved, nodeText(*node, " is being removed"), bareNode(*node)),
        nodeAnswer(kClosing, nodeText(*node, " removed"), bareNode(*node))});
  return {true, std::string(name) + " leaves, node " + std::to_string(*node)};
}

void ZwaveServer::play(std::vector<Answer> answers) {
  answers_.play(std::move(answers), [this] { mode_ = Mode::kIdle; });
}

}  // namespace tembra::sim
