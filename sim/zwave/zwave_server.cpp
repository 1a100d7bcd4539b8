#include "sim/zwave/zwave_server.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>

#include "sim/core/record_bytes.h"
#include "sim/zwave/node_blocks.h"

namespace tembra::sim {
namespace {

// The first answer to an add may be of no node. What follows the identity or the removal ends anyway.
bool endsForNode(const MessageKind& message, unsigned char node) {
  if (message.name == kJoined.name) return node == kFailedNode;
  const bool namesANode = message.name == kIdentity.name || message.name == kRemoved.name;
  return namesANode && (node == kNoNode || node == kFailedNode);
}

constexpr CodeByte kNodeByte{offsetof(ZwNodeInfo, nodeId), endsForNode};

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
                         RadioNetwork& network, IsStored isStored)
    : RadioServer(kZwaveServer, sizeof(ZwaveCommand), surroundings, manner, kNodeByte),
      catalogue_(catalogue),
      network_(network),
      isStored_(std::move(isStored)) {}

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

// A cancel is not answered: the library may be waiting for the next operation already, and would take the answer for
// that one's.
void ZwaveServer::cancel() { become(Mode::kIdle, Happening::kCancel); }

// A reset that cuts an operation off is not answered either: the library would take the answer for the operation's.
void ZwaveServer::reset() {
  const bool cutsOff = isBusy();
  network_.clear();
  become(Mode::kIdle, Happening::kReset);
  if (!cutsOff) play({nodeAnswer(kResetDone, "the network is reset", bareNode(kNoNode))});
}

Answer ZwaveServer::failure(bool adding) const {
  return nodeAnswer(adding ? kJoined : kRemoved, adding ? "adding failed" : "removing failed", bareNode(kFailedNode));
}

Outcome ZwaveServer::add(std::string_view device) {
  const auto address = network_.join(device);
  if (!address) {
    play({nodeAnswer(kJoined, "adding failed: no node id is free", bareNode(kFailedNode))});
    return {true, "adding fails: no node id is free"};
  }
  const auto node = static_cast<unsigned char>(*address);
  std::vector<Answer> answers{nodeAnswer(kJoined, nodeText(node, " joined"), bareNode(node)),
                              nodeAnswer(kIdentity, nodeText(node, " identified"), bareNode(node))};
  if (!isStored_(node)) {
    const ZwNodeInfo block = describedNode(node, *catalogue_.find(device));
    answers.push_back(nodeAnswer(kInfo, nodeText(node, " described in full"), block));
  }
  play(std::move(answers));
  return {true, std::string(device) + " joins as " + nodeText(node, "")};
}

// A device of a foreign network leaves that one: the controller cannot name a node, and has nothing to close.
Outcome ZwaveServer::remove(std::string_view device) {
  const auto address = network_.find(device);
  if (!address) {
    play({nodeAnswer(kRemoved, "a device of no known node removed", bareNode(kNoNode))});
    return {true, std::string(device) + " was not in the network"};
  }
  network_.forget(*address);
  const auto node = static_cast<unsigned char>(*address);
  play({nodeAnswer(kRemoved, nodeText(node, " is being removed"), bareNode(node)),
        nodeAnswer(kClosing, nodeText(node, " removed"), bareNode(node))});
  return {true, std::string(device) + " leaves, " + nodeText(node, "")};
}

}  // namespace tembra::sim
