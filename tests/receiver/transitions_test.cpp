// Every row of docs/state-machine.md, and that its diagram says the same.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <functional>
#include <map>

#include "kit/router.h"
#include "transition_page.h"

using kit::Device;
using kit::Node;
using kit::Router;

namespace {

constexpr unsigned char kKnown = 5;
constexpr unsigned char kUnknown = 77;
constexpr int kStates[] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 1000, INT_MAX, -1, INT_MIN};
constexpr int kUnassigned[] = {7, 9, 1000, INT_MAX, -1, INT_MIN};

/// What happens while the library waits with this time-out.
using Input = std::function<void(Router&, int timeout)>;

Input answer(const Node& node) {
  return [node](Router& router, int) { router.zwave().send(node); };
}

Input datagramOf(const char* sender) {
  return [sender](Router& router, int) { router.from(sender, 12345).send(Node(kKnown)); };
}

void waitInVain(Router& router, int timeout) { router.advance(timeout); }

const Node kUnknownSwitch = Node(kUnknown).generic(0x10).specific(1);   // has sub-types
const Node kUnknownGateway = Node(kUnknown).generic(0x02).specific(7);  // has none

// Each condition of the table, and inputs that meet it. The database holds the node kKnown.
const std::map<std::string, std::vector<Input>> kInputs = {
    {"any answer", {answer(Node(0)), answer(Node(kKnown)), answer(Node(kUnknown)), answer(Node(255))}},
    {"node 255", {answer(Node(255))}},
    {"any other node, also 0", {answer(Node(0)), answer(Node(kKnown)), answer(Node(1)), answer(Node(254))}},
    {"node 0 or 255", {answer(Node(0)), answer(Node(255))}},
    {"known node", {answer(Node(kKnown))}},
    {"any other node", {answer(Node(1)), answer(Node(kUnknown)), answer(Node(254))}},
    {"not classified", {answer(Node(kUnknown).basic(0)), answer(Node(kKnown).basic(0))}},
    {"classified, with sub-types", {answer(kUnknownSwitch)}},
    {"classified, without sub-types",
     {answer(kUnknownGateway), answer(Node(0).generic(0)), answer(Node(255).generic(0x02))}},
    {"time-out, idle 0", {waitInVain}},
    {"time-out, idle 1", {waitInVain}},
    {"datagram of the HA server", {datagramOf("127.255.255.1")}},
    {"datagram of a stranger", {datagramOf("127.0.0.1")}},
};

// Known, although the node byte says none or failure.
const Input kKnownZero = [](Router& router, int) {
  router.database().put(Device(40, "Zero").zwave(0x100));
  router.zwave().send(Node(0));
  router.database().drop("40");
};
const Input kKnownFailed = [](Router& router, int) {
  router.database().put(Device(41, "Failed").zwave(0xFF));
  router.zwave().send(Node(255));
  router.database().drop("41");
};

std::vector<Input> inputsOf(const Transition& row) {
  if (row.condition == "known node, also 0 or 255") return {answer(Node(kKnown)), kKnownZero, kKnownFailed};
  const auto found = kInputs.find(row.condition);
  return found == kInputs.end() ? std::vector<Input>{} : found->second;
}

std::vector<int> statesOf(const std::string& cell) {
  if (cell == "any state") return {std::begin(kStates), std::end(kStates)};
  if (cell == "unassigned") return {std::begin(kUnassigned), std::end(kUnassigned)};
  return {std::stoi(cell)};
}

// Where a run of a row begins. Every row is run from each combination, so that "unchanged" means it.
struct Start {
  int state;
  int idle;
  int timeout;
  int cancelTarget;
};

std::ostream& operator<<(std::ostream& stream, const Start& start) {
  return stream << "state " << start.state << " idle " << start.idle << " time-out " << start.timeout
                << " cancel target " << start.cancelTarget;
}

std::vector<Start> startsOf(const Transition& row) {
  std::vector<Start> starts;
  for (const int state : statesOf(row.from)) {
    for (const int idleBefore : {0, 1}) {
      if (row.condition == "time-out, idle " + std::to_string(1 - idleBefore)) continue;
      for (const int timeout : {20, 60}) {
        for (const int cancelTarget : {0, 1, 2, 3, 4}) starts.push_back({state, idleBefore, timeout, cancelTarget});
      }
    }
  }
  return starts;
}

// Lets the library itself set the time-out, then writes the rest.
void begin(Router& router, const Start& start) {
  TembraAssociation& assoc = router.assoc();
  assoc.assocState = start.timeout == 60 ? ASSOC : DEASSOC;
  router.zwave().send(Node(kUnknown));
  assoc.assocState = start.state;
  assoc.cancelTarget = start.cancelTarget;
  idle = static_cast<unsigned char>(start.idle);
  SensorBinaryFlag = BasicFlag = MultilevelFlag = ZwAcExtFlag = 0;
  router.forget();
}

std::string eventsOf(Router& router) {
  std::string codes;
  for (const auto& recorded : router.takeEvents()) codes += std::to_string(recorded.event.code);
  return codes.empty() ? "—" : codes;
}

// The time-out of the wait that began last.
std::string timeoutOf(const std::string& trace) {
  const auto line = trace.rfind("timeout ");
  if (line == std::string::npos || trace[trace.rfind('\n', line) + 1] != 't') return "none";
  return trace.substr(line + 8, trace.find('\n', line) - line - 8) + " s";
}

std::string numberIn(const std::string& cell, int unchanged) {
  return std::to_string(cell == "unchanged" ? unchanged : std::stoi(cell));
}

std::string expectedAfter(const Transition& row, const Start& start) {
  const std::string timeout = row.timeout == "unchanged" ? std::to_string(start.timeout) + " s" : row.timeout;
  return "event " + row.event + " state " + numberIn(row.to, start.state) + " idle " + numberIn(row.idle, start.idle) +
         " time-out " + timeout;
}

std::string found(Router& router) {
  return "event " + eventsOf(router) + " state " + std::to_string(router.assoc().assocState) + " idle " +
         std::to_string(idle) + " time-out " + timeoutOf(router.takeTrace());
}

void tryRow(Router& router, const Transition& row) {
  const auto inputs = inputsOf(row);
  EXPECT_FALSE(inputs.empty()) << "no input is known for the condition of this row";
  for (const Start& start : startsOf(row)) {
    for (const Input& input : inputs) {
      begin(router, start);
      input(router, start.timeout);
      EXPECT_EQ(found(router), expectedAfter(row, start)) << row << "\n  from " << start;
    }
  }
}

}  // namespace

TEST(TransitionsTest, EveryRowOfThePageHolds) {
  Router router;
  router.connect();
  router.database().put(Device(12, "Lamp").zwave(kKnown));
  router.watch(kit::kWatchTimeouts);
  const auto rows = readTransitionPage().rows;
  EXPECT_EQ(rows.size(), 20U);
  for (const Transition& row : rows) tryRow(router, row);
}

TEST(TransitionsTest, TheDiagramShowsExactlyTheRows) {
  const Router router;
  TransitionPage page = readTransitionPage();
  std::vector<std::string> expected;
  for (const Transition& row : page.rows) expected.push_back(row.edge());
  std::sort(expected.begin(), expected.end());
  std::sort(page.edges.begin(), page.edges.end());
  EXPECT_EQ(page.edges, expected);
}
