// Every row of the transition tables of docs/state-machine.md, and that its diagrams and the event list say the same.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <set>

#include "page_inputs.h"
#include "state_page.h"
#include "words/event_names.h"

using kit::Node;
using kit::Router;
using tembra::words::Ends;

namespace {

struct Section {
  const char* title;
  std::size_t rows;
};

void PrintTo(const Section& section, std::ostream* stream) { *stream << section.title; }

constexpr Section kSections[] = {
    {"Z-Wave answers", 16}, {"ZigBee answers", 13},         {"Hue answers", 10},
    {"Nest answers", 8},    {"Time-outs and strangers", 4},
};

constexpr int kStates[] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 1000, INT_MAX, -1, INT_MIN};
constexpr int kNeitherAddingNorRemoving[] = {0, 3, 4, 5, 6, 7, 8, 9, INT_MAX, INT_MIN};
constexpr int kUnassigned[] = {7, 9, 1000, INT_MAX, -1, INT_MIN};

std::vector<int> statesOf(const std::string& cell) {
  if (cell == "any state") return {std::begin(kStates), std::end(kStates)};
  if (cell == "any other state") return {std::begin(kNeitherAddingNorRemoving), std::end(kNeitherAddingNorRemoving)};
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
        for (const int cancelTarget : {0, 3}) starts.push_back({state, idleBefore, timeout, cancelTarget});
      }
    }
  }
  return starts;
}

// Lets the library itself set the time-out, then writes the rest.
void begin(Router& router, const Start& start) {
  TembraAssociation& assoc = router.assoc();
  assoc.assocState = start.timeout == 60 ? ASSOC : DEASSOC;
  router.zwave().send(Node(kUnknownNode));
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

void tryRow(Router& router, const Section& section, const Transition& row) {
  const auto inputs = inputsOf(section.title, row.condition);
  EXPECT_FALSE(inputs.empty()) << "no input is known for the condition of this row: " << row;
  for (const Start& start : startsOf(row)) {
    for (const Input& input : inputs) {
      begin(router, start);
      input(router, start.timeout);
      ASSERT_EQ(found(router), expectedAfter(row, start)) << row << "\n  from " << start;
    }
  }
}

// Whether the event list says of the row's event what the row's `idle` says.
bool agrees(Ends ends, const Section& section, const Transition& row) {
  const bool over = row.idle == "1";
  if (ends == Ends::kLaterFromZwave) return over || std::string(section.title) == "Z-Wave answers";
  return over == (ends == Ends::kYes);
}

class TransitionsTest : public testing::TestWithParam<Section> {};

}  // namespace

TEST_P(TransitionsTest, EveryRowOfThePageHolds) {
  Router router;
  router.connect();
  fillHome(router);
  router.watch(kit::kWatchTimeouts);
  const auto rows = transitionsOf(readSection(GetParam().title));
  EXPECT_EQ(rows.size(), GetParam().rows);
  for (const Transition& row : rows) tryRow(router, GetParam(), row);
}

TEST_P(TransitionsTest, TheDiagramShowsExactlyTheRows) {
  const Router router;
  PageSection section = readSection(GetParam().title);
  std::vector<std::string> expected;
  for (const Transition& row : transitionsOf(section)) expected.push_back(row.edge);
  std::sort(expected.begin(), expected.end());
  std::sort(section.edges.begin(), section.edges.end());
  EXPECT_EQ(section.edges, expected);
}

INSTANTIATE_TEST_SUITE_P(Page, TransitionsTest, testing::ValuesIn(kSections), [](const auto& info) {
  std::string name = info.param.title;
  name.erase(std::remove_if(name.begin(), name.end(), [](char letter) { return letter == ' ' || letter == '-'; }),
             name.end());
  return name;
});

TEST(EventListTest, SaysOfEveryEventWhetherItEndsTheOperation) {
  const Router router;
  std::set<int> onThePage;
  for (const Section& section : kSections) {
    for (const Transition& row : transitionsOf(readSection(section.title))) {
      if (row.event == "—") continue;
      const auto* event = tembra::words::findEvent(std::stoi(row.event));
      ASSERT_NE(event, nullptr) << row;
      EXPECT_TRUE(agrees(event->ends, section, row)) << row;
      onThePage.insert(event->code);
    }
  }
  EXPECT_EQ(onThePage.size(), tembra::words::eventTable().size()) << "every event stands on the page";
}
