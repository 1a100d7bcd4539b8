// What the front end and the library send before anybody answers.
#include "campaign/reader.h"

namespace campaign {

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
  const Time now = record_.began;
  const std::string& word = record_.step.word;
  switch (record_.step.goal) {
    case Goal::kAdd:
    case Goal::kRemove:
      awaits_ = record_.step.goal == Goal::kAdd ? Awaits::kAnyRadio : Awaits::kRemoval;
      toCancel_ = {Server::kZigbee, Server::kZwave};
      return tellRadios(record_.step.goal == Goal::kAdd ? " add" : " remove");
    case Goal::kCancel:
      tellRadios(" cancel");
      return end(now, 0);
    case Goal::kReset:
      return reset(now, word);
    case Goal::kHueDiscover:
      return send(now, "hue 114  ");
    case Goal::kHueAdd:
      return send(now, std::string("hue 100 ") + kBridgeId + " ");
    case Goal::kHueBulb:
      return send(now, std::string("hue 105 ") + kBridgeId + " " + word);
    case Goal::kHueRefresh:
      return send(now, std::string("hue 106 ") + kBridgeId + " ");
    case Goal::kHueRemove:
      return send(now, std::string("hue 109 ") + kBridgeId + " ");
    case Goal::kNestLink:
      return send(now, "nest 100 code");
    case Goal::kNestUnlink:
      return send(now, "nest 109 ");
  }
}

// The one that the command line names, or both.
void Reader::tellRadios(const std::string& command) {
  const std::string& word = record_.step.word;
  for (const char* radio : {"zigbee", "zwave"}) {
    if (word.empty() || word == radio || word == "both") send(record_.began, radio + command);
  }
}

// Between the halves of a ZigBee reset lie two seconds, behind every reset seven.
void Reader::reset(Time now, const std::string& radios) {
  if (radios != "zwave") {
    send(now, "zigbee reset, first half");
    now += 2 * kSecond;
    send(now, "zigbee reset, second half");
  }
  if (radios != "zigbee") send(now, "zwave reset");
  if (radios == "all") send(now, "ha remove all");
  end(now + 7 * kSecond, 0);
}

}  // namespace campaign
