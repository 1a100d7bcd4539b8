#include "campaign/flows.h"

namespace campaign {
namespace {

constexpr int kIdle = 180;
constexpr int kJoining = 60;
constexpr int kLeaving = 20;

constexpr ScenarioName kScenarios[] = {
    {Scenario::kClean, "nothing wrong"},
    {Scenario::kLost, "an answer lost"},
    {Scenario::kLate, "an answer late, within the time-out"},
    {Scenario::kTooLate, "an answer late, beyond the time-out"},
    {Scenario::kTwice, "an answer twice"},
    {Scenario::kShort, "an answer cut short"},
    {Scenario::kReordered, "answers in another order"},
    {Scenario::kForeign, "a stranger says it first"},
    {Scenario::kForeignAlone, "only a stranger says it"},
    {Scenario::kFailure, "the server tells a failure"},
    {Scenario::kCode, "an answer with any code"},
    {Scenario::kSilence, "silence from some answer on"},
    {Scenario::kKilled, "the server killed in the middle, and restarted"},
    {Scenario::kDeadFromTheStart, "the server dead from the start"},
    {Scenario::kInterrupted, "the front end interrupted"},
    {Scenario::kNobody, "nobody presses a button"},
};

constexpr const char* kZwaveDevices[] = {"metering-plug", "dimmer",        "siren",
                                         "door-lock",     "binary-sensor", "wall-thermostat"};
constexpr const char* kZigbeeDevices[] = {"zb-plug",    "zb-dimmer", "zb-door-lock",
                                          "zb-contact", "zb-siren",  "zb-thermostat"};

}  // namespace

const char* wordOf(Server server) {
  constexpr const char* words[] = {"zwave", "zigbee", "hue", "nest"};
  return words[static_cast<int>(server)];
}

const std::vector<Flow>& flows() {
  static const std::vector<Flow> all = {
      {"Z-Wave add", Goal::kAdd, Server::kZwave, {{"joined", kIdle}, {"identity", kJoining}, {"info", kIdle}}},
      {"Z-Wave remove", Goal::kRemove, Server::kZwave, {{"removed", kIdle}, {"closing", kLeaving}}},
      {"ZigBee add", Goal::kAdd, Server::kZigbee, {{"found", kIdle}, {"getting", kJoining}, {"complete", kIdle}}},
      {"ZigBee remove", Goal::kRemove, Server::kZigbee, {{"left", kIdle}}},
      {"cancel", Goal::kCancel, Server::kZwave, {{"*", kIdle}}},
      {"reset", Goal::kReset, Server::kZwave, {{"reset", kIdle}}},
      {"Hue discover", Goal::kHueDiscover, Server::kHue, {{"bridges", kIdle}}},
      {"Hue add bridge", Goal::kHueAdd, Server::kHue, {{"hue", kIdle}}},
      {"Hue add bulb", Goal::kHueBulb, Server::kHue, {{"hue", kIdle}}},
      {"Hue refresh", Goal::kHueRefresh, Server::kHue, {{"hue", kIdle}}},
      {"Hue remove bridge", Goal::kHueRemove, Server::kHue, {{"hue", kIdle}}},
      {"Nest link", Goal::kNestLink, Server::kNest, {{"nest", kIdle}}},
      {"Nest unlink", Goal::kNestUnlink, Server::kNest, {{"nest", kIdle}}},
  };
  return all;
}

std::span<const ScenarioName> scenarios() { return kScenarios; }

std::span<const char* const> devicesOf(Server radio) {
  return radio == Server::kZwave ? kZwaveDevices : kZigbeeDevices;
}

}  // namespace campaign
