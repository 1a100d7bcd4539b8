// What the library asks of the two radio servers.
#include <memory>

#include "daemon_check/exercise.h"
#include "daemon_check/record_faults.h"
#include "sim/core/record_bytes.h"
#include "tembra/vocabulary.h"

namespace tembra::daemon_check {
namespace {

using sim::bytesOf;
using sim::recordFrom;
using namespace std::chrono_literals;

constexpr const char* kPressNew = "press the button of a device that is not in the network";
constexpr const char* kPressAgain = "press the button of the same device again";

/// The device of the exercises, by its node id or short address. Adding it sets the number, all else compares with it.
using Number = std::shared_ptr<int>;

std::string changed(const char* what, int from, int to) {
  return std::string(what) + " changed from " + std::to_string(from) + " to " + std::to_string(to);
}

Command zwaveCommand(ozw_OperationCode operation, ozw_ControllerCommand controllerCommand) {
  ZwaveCommand command{};
  command.operation = operation;
  command.controllerCommand = controllerCommand;
  return [bytes = bytesOf(command)] { return bytes; };
}

Judgement judgeNode(const ZwNodeInfo& node, const Number& number, bool begins) {
  if (node.nodeId == NODE_FAILED) return {Course::kOver, {"the daemon says that it failed (node 255)"}};
  if (node.nodeId == NODE_NONE) return {Course::kOver, {"node 0, which is no node"}};
  if (begins) *number = node.nodeId;
  if (node.nodeId != *number) return {Course::kNextAnswer, {changed("the node id", *number, node.nodeId)}};
  return {Course::kNextAnswer, {}};
}

Owed nodeAnswer(const char* name, std::chrono::seconds limit, const Number& number, bool begins = false) {
  return {name, limit, [number, begins](const Datagram& datagram) {
            return judgeNode(recordFrom<ZwNodeInfo>(datagram), number, begins);
          }};
}

Owed nodeDescription(const Number& number) {
  return {"the description", 180s, [number](const Datagram& datagram) {
            const auto node = recordFrom<ZwNodeInfo>(datagram);
            Judgement judgement = judgeNode(node, number, false);
            const Faults faults = faultsIn(node);
            judgement.faults.insert(judgement.faults.end(), faults.begin(), faults.end());
            return judgement;
          }};
}

// The library does not wait for it.
Owed resetAnswer() {
  const auto judge = [](const Datagram& datagram) -> Judgement {
    const int node = recordFrom<ZwNodeInfo>(datagram).nodeId;
    if (node == NODE_NONE) return {Course::kNextAnswer, {}};
    return {Course::kOver, {"node " + std::to_string(node) + " where node 0 is due"}};
  };
  return {"the answer", 20s, judge, true};
}

Command zigbeeCommand(const char* text, const char* argument) {
  ZigbeeCommand command{};
  sim::setText(command.command, text);
  sim::setText(command.argument, argument);
  return [bytes = bytesOf(command)] { return bytes; };
}

bool isFailure(int status, int due) {
  return status == ZIGBEE_ADD_FAILED_TOO || status == ZIGBEE_REMOVED_UNKNOWN ||
         (status == ZIGBEE_ADD_FAILED && due != ZIGBEE_REMOVED);
}

bool keepsWaiting(int status, int due) {
  return due != ZIGBEE_REMOVED &&
         (status == ZIGBEE_STILL_ADDING || (status == ZIGBEE_GETTING_INFO && due == ZIGBEE_INFO_COMPLETE));
}

Judgement judgeStatus(const ZbDeviceInfo& device, int due, const Number& number) {
  const int status = device.msgCode;
  if (isFailure(status, due)) {
    return {Course::kOver, {"the daemon says that it failed (status " + std::to_string(status) + ")"}};
  }
  const bool begins = due == ZIGBEE_FOUND && *number < 0;
  if (begins) *number = device.shortAddress;
  std::vector<std::string> faults;
  if (device.shortAddress != *number) faults.push_back(changed("the short address", *number, device.shortAddress));
  if (keepsWaiting(status, due)) return {Course::kSameAnswer, faults};
  if (status != due) {
    faults.push_back("status " + std::to_string(status) + " where " + std::to_string(due) + " is due");
    return {Course::kOver, faults};
  }
  return {Course::kNextAnswer, faults};
}

Owed statusAnswer(const char* name, std::chrono::seconds limit, int due, const Number& number) {
  return {name, limit, [due, number](const Datagram& datagram) {
            const auto device = recordFrom<ZbDeviceInfo>(datagram);
            Judgement judgement = judgeStatus(device, due, number);
            if (due == ZIGBEE_INFO_COMPLETE && judgement.course == Course::kNextAnswer) {
              const Faults faults = faultsIn(device);
              judgement.faults.insert(judgement.faults.end(), faults.begin(), faults.end());
            }
            return judgement;
          }};
}

}  // namespace

Subject zwaveSubject(bool reset) {
  const auto number = std::make_shared<int>(-1);
  const Command add = zwaveCommand(ozw_Code_ControllerCommandOperation, ozw_ControllerCommand_AddDevice);
  const Command remove = zwaveCommand(ozw_Code_ControllerCommandOperation, ozw_ControllerCommand_RemoveDevice);
  const Command cancel = zwaveCommand(ozw_Code_CancelCommandOperation, ozw_ControllerCommand_None);
  Subject subject{sim::kZwaveServer, sizeof(ZwaveCommand), sizeof(ZwNodeInfo), {}};
  subject.exercises = {
      {"cancel", "", {add}, {}, {cancel}},
      {"add",
       kPressNew,
       {add},
       {nodeAnswer("the node", 180s, number, true), nodeAnswer("the identity", 60s, number), nodeDescription(number)},
       {}},
      {"add again",
       kPressAgain,
       {add},
       {nodeAnswer("the node", 180s, number), nodeAnswer("the identity", 60s, number)},
       {cancel}},
      {"remove",
       kPressAgain,
       {remove},
       {nodeAnswer("the node", 180s, number), nodeAnswer("the closing answer", 20s, number)},
       {}},
  };
  if (reset) {
    const Command command = zwaveCommand(ozw_Code_ResetCommandOperation, ozw_ControllerCommand_None);
    subject.exercises.push_back({"reset", "", {command}, {resetAnswer()}, {}});
  }
  return subject;
}

Subject zigbeeSubject(bool reset) {
  const auto number = std::make_shared<int>(-1);
  const Command add = zigbeeCommand("option button1", "IAS");
  const Command cancel = zigbeeCommand("network pjoin 0", "cancel");
  const std::vector<Owed> added{statusAnswer("status 1", 180s, ZIGBEE_FOUND, number),
                                statusAnswer("status 6", 60s, ZIGBEE_GETTING_INFO, number),
                                statusAnswer("status 10", 180s, ZIGBEE_INFO_COMPLETE, number)};
  Subject subject{sim::kZigbeeServer, sizeof(ZigbeeCommand), sizeof(ZbDeviceInfo), {}};
  subject.exercises = {
      {"cancel", "", {add}, {}, {cancel}},
      {"add", kPressNew, {add}, added, {}},
      {"add again", kPressAgain, {add}, {added[0], added[1]}, {cancel}},
      {"remove",
       kPressAgain,
       {zigbeeCommand(" ", "remove")},
       {statusAnswer("status 2", 180s, ZIGBEE_REMOVED, number)},
       {}},
  };
  if (reset) {
    subject.exercises.push_back(
        {"reset", "", {zigbeeCommand("n l", ""), zigbeeCommand("option button0", "")}, {}, {cancel}});
  }
  return subject;
}

}  // namespace tembra::daemon_check
