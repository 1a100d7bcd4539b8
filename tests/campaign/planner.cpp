// Draws the plan of a run.
#include "campaign/plan.h"

#include <algorithm>
#include <random>

namespace campaign {
namespace {

class Planner {
 public:
  explicit Planner(unsigned long seed)
      : random_(seed),
        flow_(flows()[seed / scenarios().size() % flows().size()]),
        scenario_(scenarios()[seed % scenarios().size()]) {
    plan_.seed = seed;
    plan_.flow = &flow_;
    plan_.scenario = &scenario_;
  }

  Plan make();

 private:
  // One draw an expression at most: compilers differ in the order in which they evaluate its parts.
  int between(int least, int most) {
    return least + static_cast<int>(random_() % static_cast<unsigned>(most - least + 1));
  }
  bool once(int in) { return between(1, in) == 1; }
  template <typename Range>
  const auto& oneOf(const Range& range) {
    return range[static_cast<std::size_t>(between(0, static_cast<int>(std::size(range)) - 1))];
  }

  Step step(Goal goal);
  Step pressed(Goal goal, Server radio, const std::string& device);
  void prepare();
  void pressInTime(Step& tried);
  void spoil(Step& tried);
  void fault(Step& tried, const std::string& what);
  std::string lateness(const Message& message, bool tooLate);
  std::string code();
  void fail(Step& tried);
  void killInTheMiddle(Step& tried);
  void deadFromTheStart(Step& tried);
  [[nodiscard]] int longestMs() const;
  void addSmallFault(Step& tried);
  std::string anyButTheLastAnswer();
  void recover();

  std::mt19937_64 random_;
  const Flow& flow_;
  const ScenarioName& scenario_;
  Plan plan_;
  std::string device_;
  int pressAt_ = 0;
};

bool isRadio(Server server) { return server == Server::kZwave || server == Server::kZigbee; }

Action at(int milliseconds, std::string request) { return {milliseconds * kMillisecond, std::move(request)}; }

Step Planner::step(Goal goal) {
  Step step;
  step.goal = goal;
  step.name = "Device " + std::to_string(plan_.seed) + "." + std::to_string(plan_.steps.size());
  return step;
}

Step Planner::pressed(Goal goal, Server radio, const std::string& device) {
  Step plain = step(goal);
  plain.device = device;
  plain.actions.push_back(at(between(200, 900), isRadio(radio) ? "press " + device : "press hue-button"));
  plain.mustSucceed = true;
  return plain;
}

// What has to be in the home before: the device that leaves, the bridge that is asked for, now and then another one.
void Planner::prepare() {
  const bool known = flow_.goal == Goal::kRemove || (flow_.goal == Goal::kAdd && once(8)) ||
                     flow_.goal == Goal::kReset || (flow_.goal == Goal::kCancel && once(2));
  if (known) plan_.steps.push_back(pressed(Goal::kAdd, flow_.server, device_));
  const bool bridge = flow_.goal == Goal::kHueBulb || flow_.goal == Goal::kHueRefresh ||
                      flow_.goal == Goal::kHueRemove || (flow_.goal == Goal::kHueAdd && once(4));
  if (bridge) plan_.steps.push_back(pressed(Goal::kHueAdd, Server::kHue, ""));
  if (flow_.goal == Goal::kNestUnlink) plan_.steps.push_back(step(Goal::kNestLink));
}

void Planner::pressInTime(Step& tried) {
  if (scenario_.scenario == Scenario::kNobody || (scenario_.scenario == Scenario::kFailure && isRadio(flow_.server))) {
    return;
  }
  if (flow_.goal == Goal::kHueAdd) tried.actions.push_back(at(pressAt_, "press hue-button"));
  if (flow_.goal != Goal::kAdd && flow_.goal != Goal::kRemove) return;
  tried.device = device_;
  tried.actions.push_back(at(pressAt_, "press " + device_));
  const Server other = flow_.server == Server::kZwave ? Server::kZigbee : Server::kZwave;
  if (!once(6)) return;
  const int later = pressAt_ + between(0, 2000);
  tried.actions.push_back(at(later, std::string("press ") + oneOf(devicesOf(other))));
}

void Planner::fault(Step& tried, const std::string& what) {
  tried.actions.insert(tried.actions.begin(), at(0, "fault " + what));
}

// Never at the very moment of anything else.
std::string Planner::lateness(const Message& message, bool tooLate) {
  const int wait = message.waitSeconds * 1000;
  const int late = tooLate ? wait + between(100, 30'000) : between(100, wait - 12'000);
  return std::to_string(late / 10 * 10 + 3);
}

// The codes that mean something are small, but for a failure of the Z-Wave radio and the Nest server's.
std::string Planner::code() {
  constexpr int nestCodes[] = {100, 121, 122, 123, 124, 125};
  if (flow_.server == Server::kNest) return std::to_string(oneOf(nestCodes));
  if (flow_.server == Server::kHue) return std::to_string(between(0, 9));
  return std::to_string(once(4) ? between(0, 255) : between(0, 13));
}

void Planner::fail(Step& tried) {
  if (flow_.goal == Goal::kAdd || flow_.goal == Goal::kRemove) {
    tried.actions.push_back(at(pressAt_, std::string("fail ") + wordOf(flow_.server)));
  } else if (flow_.server == Server::kNest) {
    constexpr const char* answers[] = {"124 -1", "124 0", "100"};
    const int moment = between(1, plan_.latencyMs - 1);
    tried.actions.push_back(at(moment, std::string("answer nest ") + oneOf(answers)));
  } else {
    fault(tried, std::string(flow_.answers.front().name) + ":code");
  }
}

void Planner::killInTheMiddle(Step& tried) {
  const std::string server = wordOf(flow_.server);
  const bool atOnce = flow_.server == Server::kHue || flow_.server == Server::kNest;
  const int killed =
      atOnce && flow_.goal != Goal::kHueAdd ? between(1, 2 * plan_.latencyMs) : pressAt_ + between(-200, 2500);
  const int started = killed + (once(5) ? 200'000 : between(100, 8000));
  tried.actions.push_back(at(killed, "kill " + server));
  tried.actions.push_back(at(started, "start " + server));
  const bool again = flow_.goal == Goal::kAdd || flow_.goal == Goal::kRemove;
  if (again && once(2)) tried.actions.push_back(at(started + between(1, 3000), "press " + device_));
}

void Planner::deadFromTheStart(Step& tried) {
  const std::string server = wordOf(flow_.server);
  tried.actions.insert(tried.actions.begin(), at(0, "kill " + server));
  if (isRadio(flow_.server) && once(4)) {
    tried.actions.insert(tried.actions.begin(), at(0, server == "zwave" ? "kill zigbee" : "kill zwave"));
  }
  if (once(2)) tried.actions.push_back(at(between(10, 3000), "start " + server));
}

// How long the flow takes when nothing goes wrong, and a little longer.
int Planner::longestMs() const {
  if (flow_.goal == Goal::kReset) return 9500;
  const bool atOnce = !isRadio(flow_.server) && flow_.goal != Goal::kHueAdd;
  return (atOnce ? 0 : pressAt_) + (isRadio(flow_.server) ? 6 : 2) * plan_.latencyMs;
}

void Planner::addSmallFault(Step& tried) {
  constexpr const char* kinds[] = {":lost", ":twice", ":foreign", ":reordered", ":late=700", ":short=11"};
  const std::string name = oneOf(flow_.answers).name;
  fault(tried, name + oneOf(kinds));
}

// The last one has none to change places with.
std::string Planner::anyButTheLastAnswer() {
  const int candidates = std::max(1, static_cast<int>(flow_.answers.size()) - 1);
  return flow_.answers[static_cast<std::size_t>(between(0, candidates - 1))].name;
}

void Planner::spoil(Step& tried) {
  const Message& message = oneOf(flow_.answers);
  const std::string name = message.name;
  constexpr int lengths[] = {0, 1, 2, 4, 8, 11, 12, 54, 55, 200, 443, 1000, 1035, 3000};
  switch (scenario_.scenario) {
    case Scenario::kLost:
      return fault(tried, name + ":lost");
    case Scenario::kLate:
    case Scenario::kTooLate:
      return fault(tried, name + ":late=" + lateness(message, scenario_.scenario == Scenario::kTooLate));
    case Scenario::kTwice:
      return fault(tried, name + (once(3) ? ":twice:always" : ":twice"));
    case Scenario::kShort:
      return fault(tried, name + ":short=" + std::to_string(oneOf(lengths)));
    case Scenario::kReordered:
      return fault(tried, anyButTheLastAnswer() + ":reordered");
    case Scenario::kForeignAlone:
      fault(tried, name + ":lost");
      [[fallthrough]];
    case Scenario::kForeign:
      return fault(tried, name + ":foreign");
    case Scenario::kFailure:
      return fail(tried);
    case Scenario::kCode:
      return fault(tried, name + ":code=" + code());
    case Scenario::kSilence:
      return fault(tried, name + ":silence");
    case Scenario::kKilled:
      return killInTheMiddle(tried);
    case Scenario::kDeadFromTheStart:
      return deadFromTheStart(tried);
    case Scenario::kInterrupted:
      tried.interrupt = between(0, longestMs()) * kMillisecond + kMillisecond / 2;
      return;
    case Scenario::kClean:
    case Scenario::kNobody:
      return;
  }
}

// Whatever happened, a plain add succeeds afterwards, be it of the very device that could not be added. What was on its
// way may arrive before it, in the middle of it, or never.
void Planner::recover() {
  const bool again = flow_.goal == Goal::kAdd && once(2);
  const Server radio = again ? flow_.server : once(2) ? Server::kZwave : Server::kZigbee;
  const std::string device = again ? device_ : std::string(oneOf(devicesOf(radio))) + "#2";
  Step last = pressed(Goal::kAdd, radio, device);
  last.pause = (once(3) ? 300'000 : between(0, 3000)) * kMillisecond;
  for (const Server server : {Server::kZwave, Server::kZigbee, Server::kHue, Server::kNest}) {
    last.actions.insert(last.actions.begin(), at(0, std::string("start ") + wordOf(server)));
  }
  last.actions.insert(last.actions.begin(), at(0, "fault none"));
  plan_.steps.push_back(last);
}

Plan Planner::make() {
  plan_.latencyMs = between(5, 40) * 10;
  pressAt_ = between(300, 5000);
  if (isRadio(flow_.server)) device_ = oneOf(devicesOf(flow_.server));
  prepare();
  Step tried = step(flow_.goal);
  constexpr const char* resets[] = {"zigbee", "zwave", "both", "all"};
  constexpr const char* cancels[] = {"zigbee", "zwave", "both"};
  if (flow_.goal == Goal::kReset) tried.word = oneOf(resets);
  if (flow_.goal == Goal::kCancel) tried.word = oneOf(cancels);
  if (flow_.goal == Goal::kHueBulb) tried.word = "Lamp " + std::to_string(plan_.seed);
  if (!isRadio(flow_.server) && once(2)) tried.role = "web";
  pressInTime(tried);
  spoil(tried);
  if (scenario_.scenario != Scenario::kClean && once(3)) addSmallFault(tried);
  tried.isTried = true;
  tried.mustSucceed = scenario_.scenario == Scenario::kClean;
  plan_.steps.push_back(tried);
  recover();
  for (Step& each : plan_.steps) {
    std::stable_sort(each.actions.begin(), each.actions.end(),
                     [](const Action& one, const Action& other) { return one.after < other.after; });
  }
  return plan_;
}

}  // namespace

std::size_t pairs() { return flows().size() * scenarios().size(); }

Plan planFor(unsigned long seed) { return Planner(seed).make(); }

}  // namespace campaign
