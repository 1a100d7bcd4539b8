#include "cancel_rules.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <map>
#include <vector>

namespace {

constexpr int kKeep = -1;
constexpr const char* kKeepText = nullptr;

struct Rule {
  const char* states;  // in which it holds, "" in all
  const char* inputs;
  const char* told;
  int state;
  int idle;
  int target;
  int radio;
  const char* command;
  int wait;
};

constexpr char kEveryNode[] = "node0 node255 known types plain unclassified";
constexpr char kEveryZigbee[] =
    "zb1 zb2 zb3 zb5 zb6 zb10plain zb10types zb10refused zb11 zb12 zb1stranger zb2stranger zb12stranger";

constexpr int K = kKeep;
constexpr const char* T = kKeepText;

constexpr Rule kRules[] = {
    // The front end's calls: an operation takes the place of the one before, a cancel leaves all but `idle`.
    {"", "add", "add-zigbee add-zwave", 1, 0, 3, K, "AddDevice", K},
    {"", "remove", "remove-zigbee remove-zwave", 2, 0, 3, K, "RemoveDevice", K},
    {"", "hue", "hue-add", K, 0, K, 3, "AddIPDevice", K},
    {"", "nest", "nest-add", K, 0, K, 4, "AddIPDevice", K},
    {"", "cancel1", "cancel-zigbee", K, K, K, K, T, K},
    {"", "cancel2", "cancel-zwave", K, K, K, K, T, K},
    {"", "cancel3", "cancel-zigbee cancel-zwave", K, 1, K, K, T, K},

    // The Z-Wave server while an add waits for either radio, for the identity, for the description.
    {"1", "node255", "cancel-zigbee 9/2", 0, 1, 2, 2, T, K},
    {"1", "node0 known types plain unclassified", "cancel-zigbee 3/2", 4, 0, 2, 2, "AddingSensor", 60},
    {"4", "known", "4/2", 0, 1, K, K, T, K},
    {"4", "node0 node255", "9/2", 0, 1, K, K, T, K},
    {"4", "types plain unclassified", "5/2", 5, K, K, K, "GettingInfo", 180},
    {"5", "unclassified", "9/2", 0, 1, K, K, T, K},
    {"5", "types", "6/2", 0, K, K, K, "SelectDeviceType", K},
    {"5", "node0 node255 known plain", "7/2", 0, K, K, K, "EditNameLocation", K},

    // While a remove waits for either radio, for the closing answer, and when nothing is expected.
    {"2", "node0 node255", "cancel-zigbee 12/2", 0, 1, 2, 2, T, K},
    {"2", "known", "cancel-zigbee drop-zwave 11/2", 6, 0, 2, 2, "RemoveDevice", 20},
    {"2", "types plain unclassified", "cancel-zigbee 12/2", 6, 0, 2, 2, "RemoveDevice", 20},
    {"6", kEveryNode, "", 0, 1, 0, K, T, K},
    {"0 8", kEveryNode, "", 0, K, K, K, T, K},

    // The ZigBee server while an add waits: a quiet end leaves `idle` to the time-out.
    {"1", "zb1 zb1stranger", "cancel-zwave 3/1", 1, 0, 1, 1, "AddingSensor", 60},
    {"1", "zb6", "5/1", 1, 0, K, K, "GettingInfo", 180},
    {"1", "zb2 zb11 zb2stranger", "9/1", 0, 1, K, K, T, K},
    {"1", "zb10plain", "7/1", 8, K, K, K, "EditNameLocation", K},
    {"1", "zb10types", "6/1", 8, K, K, K, "SelectDeviceType", K},
    {"1", "zb10refused", "", 8, K, K, K, T, K},
    {"1", "zb3", "", K, K, K, K, T, K},
    {"1", "zb5 zb12 zb12stranger", "", 0, K, K, K, T, K},

    // While a remove waits, a stranger that left is "unknown"; in all other states there is nothing to say.
    {"2", "zb2", "cancel-zwave drop-zigbee 11/1", 0, 1, 0, 1, T, K},
    {"2", "zb12 zb2stranger zb12stranger", "cancel-zwave 12/1", 0, 1, 0, 1, T, K},
    {"2", "zb1 zb1stranger zb3 zb5 zb6 zb10plain zb10types zb10refused zb11", "", K, K, K, K, T, K},
    {"0 4 5 6 8", kEveryZigbee, "", K, K, K, K, T, K},

    // The Hue and the Nest server are heard in every state and change none.
    {"", "hue0", "21/3", K, 0, K, K, "AddIPDevice", K},
    {"", "hue1", "30", K, 1, K, K, T, K},
    {"", "hue2", "25/3", K, 1, K, K, T, K},
    {"", "hue3", "27/3", K, 1, K, K, T, K},
    {"", "hue4", "26/3", K, 1, K, K, T, K},
    {"", "hue5", "28/3", K, 1, K, K, T, K},
    {"", "hue6", "29/3", K, 1, K, K, T, K},
    {"", "hue8", "22/3", K, 1, K, K, T, K},
    {"", "hue9", "23/3", K, 1, K, K, T, K},
    {"", "hue7 hue10", "", K, K, K, K, T, K},
    {"", "nest100", "44/4", K, 1, K, K, T, K},
    {"", "nest121", "41/4", K, 1, K, K, T, K},
    {"", "nest122", "43/4", K, 1, K, K, T, K},
    {"", "nest123", "42/4", K, 1, K, K, T, K},
    {"", "nest124done", "45/4", K, 1, K, K, T, K},
    {"", "nest124failed", "46/4", K, 1, K, K, T, K},
    {"", "nest124other nest99", "", K, 1, K, K, T, K},

    // Nobody else counts.
    {"", "none ha stranger", "", K, K, K, K, T, K},

    // The wait ends: of an operation with each cancel target, or of none.
    {"", "overdue0", "2", K, 1, 0, K, T, K},
    {"", "overdue1", "cancel-zigbee 2", K, 1, 0, K, T, K},
    {"", "overdue2", "cancel-zwave 2", K, 1, 0, K, T, K},
    {"", "overdue3", "cancel-zigbee cancel-zwave 2", K, 1, 0, K, T, K},
    {"", "rest", "", K, K, K, K, T, 180},
};

constexpr int kProgress[] = {3, 5, 6, 7, 21};

std::vector<std::string_view> wordsOf(std::string_view text) {
  std::vector<std::string_view> words;
  while (!text.empty()) {
    const auto end = std::min(text.find(' '), text.size());
    words.push_back(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return words;
}

using RulesOfInputs = std::map<std::string, std::vector<const Rule*>, std::less<>>;

RulesOfInputs sortedByInput() {
  RulesOfInputs sorted;
  for (const Rule& rule : kRules) {
    for (const std::string_view input : wordsOf(rule.inputs)) sorted[std::string(input)].push_back(&rule);
  }
  return sorted;
}

bool isFor(const Rule& rule, int state) {
  const auto states = wordsOf(rule.states);
  return states.empty() || std::find(states.begin(), states.end(), std::to_string(state)) != states.end();
}

const Rule* findOnlyRule(std::string_view input, int state) {
  static const RulesOfInputs rules = sortedByInput();
  const auto ofInput = rules.find(input);
  if (ofInput == rules.end()) return nullptr;
  const auto isForState = [state](const Rule* rule) { return isFor(*rule, state); };
  const auto& all = ofInput->second;
  const auto found = std::find_if(all.begin(), all.end(), isForState);
  if (found == all.end() || std::any_of(found + 1, all.end(), isForState)) return nullptr;
  return *found;
}

std::string plainName(std::string_view input, const Situation& now) {
  if (input != "timeout") return std::string(input);
  return now.idle == 1 ? "rest" : "overdue" + std::to_string(now.target);
}

// A progress event is remembered until the next event; the time-out carries what was remembered.
std::string rememberEvents(const char* told, int& last) {
  std::string text;
  for (const std::string_view next : wordsOf(told)) {
    std::string word(next);
    if (word == "2") word.append("<").append(std::to_string(last));
    if (word[0] >= '0' && word[0] <= '9') {
      const int code = std::stoi(word);
      last = std::count(std::begin(kProgress), std::end(kProgress), code) != 0 ? code : 0;
    }
    text.append(text.empty() ? "" : " ").append(word);
  }
  return text;
}

void change(int& field, int to) {
  if (to != kKeep) field = to;
}

}  // namespace

std::string Situation::text() const {
  std::string text = "state ";
  text.append(std::to_string(state)).append(" idle ").append(std::to_string(idle));
  text.append(" last ").append(std::to_string(last)).append(" cancel ").append(std::to_string(target));
  return text.append(" radio ").append(std::to_string(radio)).append(" cmdtype ").append(command);
}

std::string follow(std::string_view input, Situation& situation) {
  const Rule* rule = findOnlyRule(plainName(input, situation), situation.state);
  if (rule == nullptr) return "no rule";
  change(situation.state, rule->state);
  change(situation.idle, rule->idle);
  change(situation.target, rule->target);
  change(situation.radio, rule->radio);
  change(situation.wait, rule->wait);
  if (rule->command != kKeepText) situation.command = rule->command;
  return rememberEvents(rule->told, situation.last);
}
