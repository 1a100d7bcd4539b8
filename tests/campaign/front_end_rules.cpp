// What the front end asks the library for, and what it makes of the events.
#include <tembra/events.h>

#include "campaign/reader.h"
#include "oracle/formatted.h"
#include "oracle/offsets.h"

namespace campaign {
namespace {

constexpr int kNode = 2;  // the kind of a node's record

unsigned nodeIn(const oracle::Record<1036>& node) { return node.bytes[0]; }
unsigned addressIn(const oracle::Record<444>& device) { return device.bytes[0] + 256U * device.bytes[1]; }

// The number of a cancel or reset.
int numberOf(const std::string& word) {
  if (word == "zigbee") return 1;
  if (word == "zwave") return 2;
  return word == "all" ? 4 : 3;
}

}  // namespace

bool isIp(Goal goal) { return goal >= Goal::kHueDiscover; }
bool isHue(Goal goal) { return isIp(goal) && goal < Goal::kNestLink; }

bool nobodyIsThere(const Record& record) {
  const auto dead = [&record](Server server) { return record.deadAtStart.contains(server); };
  const Goal goal = record.step.goal;
  if (isIp(goal)) return dead(isHue(goal) ? Server::kHue : Server::kNest);
  if (record.step.word == "zwave") return dead(Server::kZwave);
  if (record.step.word == "zigbee") return dead(Server::kZigbee);
  return dead(Server::kZwave) && dead(Server::kZigbee);
}

void Reader::begin() {
  const std::string& word = record_.step.word;
  const Goal goal = record_.step.goal;
  switch (goal) {
    case Goal::kAdd:
      model_.startAdding();
      break;
    case Goal::kRemove:
      model_.startRemoving();
      break;
    case Goal::kCancel:
      model_.cancel(numberOf(word));
      break;
    case Goal::kReset:
      model_.reset(numberOf(word));
      break;
    case Goal::kHueDiscover:
      model_.hueDiscover();
      break;
    case Goal::kHueAdd:
      model_.hueAddBridge(kBridgeMac);
      break;
    case Goal::kHueBulb:
      model_.hueAddBulb(kBridgeMac, word);
      break;
    case Goal::kHueRefresh:
      model_.hueRefresh(kBridgeMac, "");
      break;
    case Goal::kHueRemove:
      model_.hueRemove(kBridgeMac);
      break;
    case Goal::kNestLink:
      model_.nestAdd("code");
      break;
    case Goal::kNestUnlink:
      model_.nestRemove();
      break;
  }
  Time now = record_.began;
  tell(now);
  if (goal == Goal::kCancel || goal == Goal::kReset) end(now, 0);
}

void Reader::heard(Time now, int code) {
  if (record_.step.goal == Goal::kAdd) return heardWhileAdding(now, code);
  if (record_.step.goal == Goal::kRemove) return heardWhileRemoving(now, code);
  heardFromIpServer(now, code);
}

void Reader::heardWhileAdding(Time now, int code) {
  if (code == EVENT_TIMEOUT || code == EVENT_ALREADY_ADDED || code == EVENT_ADD_FAILED) return end(now, 1);
  if (code != EVENT_SELECT_TYPE && code != EVENT_CREATED) return;
  named_ = now + kNaming;
  type_ = firstType(code);
}

// The first type that is offered, or the only one.
int Reader::firstType(int code) const {
  if (code == EVENT_SELECT_TYPE) return model_.report.number(oracle::kReportList);
  return model_.activeRadio == oracle::kZwave ? model_.zwWork.number(oracle::kNodeProposedType) : model_.devType;
}

// The front end gives the type, which the library confirms with an event, and a name.
void Reader::handOver(Time now) {
  model_.chooseType(type_);
  model_.setName(record_.step.name);
  model_.setLocation("Default");
  if (model_.zwWork.number(oracle::kNodeKind) == kNode) {
    const int type = model_.zwWork.number(oracle::kNodeFinalType);
    expected_.added = {Server::kZwave, nodeIn(model_.zwWork), oracle::typeName(type)};
  } else {
    const int type = model_.zbDevice.byte(oracle::kZigbeeType);
    expected_.added = {Server::kZigbee, addressIn(model_.zbDevice), oracle::typeName(type)};
  }
  model_.finish();
  tell(now);
  end(now, 0);
}

void Reader::heardWhileRemoving(Time now, int code) {
  if (code == EVENT_TIMEOUT) return end(now, 1);
  if (code == EVENT_REMOVED) {
    const bool isNode = model_.activeRadio == oracle::kZwave;
    expected_.removed = isNode ? Party{Server::kZwave, nodeIn(model_.zwReceived), ""}
                               : Party{Server::kZigbee, addressIn(model_.zbDevice), ""};
  }
  if (code == EVENT_REMOVED || code == EVENT_REMOVED_UNKNOWN) leaving_ = code;
}

void Reader::heardFromIpServer(Time now, int code) {
  const bool hueEvent = code >= EVENT_HUE_BRIDGES && code <= EVENT_HUE_FAILED;
  const bool nestEvent = code >= EVENT_NEST_41 && code <= EVENT_NEST_46;
  const bool ours = code == EVENT_TIMEOUT || (isHue(record_.step.goal) ? hueEvent : nestEvent);
  if (!ours) return;
  const auto done = [goal = record_.step.goal, code] {
    switch (goal) {
      case Goal::kHueDiscover:
        return code == EVENT_HUE_BRIDGES;
      case Goal::kHueAdd:
        return code == EVENT_HUE_ADDED;
      case Goal::kHueBulb:
        return code == EVENT_HUE_BULB_ADDED;
      case Goal::kHueRefresh:
      case Goal::kHueRemove:
        return code == EVENT_HUE_DONE || code == EVENT_HUE_DONE_2;
      case Goal::kNestLink:
        return code == EVENT_NEST_41 || code == EVENT_NEST_45;
      case Goal::kNestUnlink:
        return code == EVENT_NEST_43 || code == EVENT_NEST_45;
      default:
        return false;
    }
  };
  end(now, done() ? 0 : 1);
}

void Reader::end(Time now, int status) {
  over_ = true;
  expected_.end = now;
  expected_.status = status;
}

}  // namespace campaign
