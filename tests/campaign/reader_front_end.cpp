// What the front end makes of the events.
#include <tembra/events.h>

#include "campaign/reader.h"

namespace campaign {

void Reader::heard(Time now, int code) {
  if (record_.step.goal == Goal::kAdd) return heardWhileAdding(now, code);
  if (record_.step.goal == Goal::kRemove) return heardWhileRemoving(now, code);
  if (isIp(record_.step.goal)) heardFromIpServer(now, code);
}

void Reader::heardWhileAdding(Time now, int code) {
  if (code == EVENT_TIMEOUT || code == EVENT_ALREADY_ADDED || code == EVENT_ADD_FAILED) {
    expected_.added.reset();
    return end(now, 1);
  }
  if (code == kOffered) named_ = now + kNaming;
}

// The front end gives the type, which the library confirms with an event, and a name.
void Reader::handOver(Time now) {
  const Party& party = *expected_.added;
  expected_.events.push_back({now, EVENT_CREATED});
  send(now, std::string("ha ") + wordOf(party.radio) + " " + std::to_string(party.address) + " added");
  end(now, 0);
}

void Reader::heardWhileRemoving(Time now, int code) {
  if (code == EVENT_TIMEOUT) return end(now, 1);
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
