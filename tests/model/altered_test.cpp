// That comparing can fail: a model that is altered in one place is found out, and the shortest run that shows it is
// short.
#include <gtest/gtest.h>

#include <algorithm>

#include "comparison.h"
#include "generator.h"
#include "operations.h"

namespace oracle {
namespace {

constexpr std::size_t kAlteredSteps = 60;
constexpr std::size_t kRuns = 40;
constexpr std::size_t kShort = 5;

using Effects = std::vector<Effect>;

Effects::iterator lineWith(Effects& effects, const std::string& part) {
  return std::find_if(effects.begin(), effects.end(),
                      [&](const Effect& effect) { return effect.line.find(part) != std::string::npos; });
}

bool has(Effects& effects, const std::string& part) { return lineWith(effects, part) != effects.end(); }

void rename(Effects& effects, const std::string& line, const std::string& other) {
  for (Effect& effect : effects) {
    if (effect.line == line) effect.line = other;
  }
}

const struct {
  const char* name;
  Alteration alteration;
} kAlterations[] = {
    {"two lines change places",
     [](Model&, Effects& effects) {
       const auto line = lineWith(effects, "Adding sensor (Z-wave)");
       if (line != effects.end()) std::iter_swap(line, line + 1);
     }},
    {"a line has another level",
     [](Model&, Effects& effects) {
       rename(effects, "log 2 libTembraAssoc:Unknown cancel type", "log 1 libTembraAssoc:Unknown cancel type");
     }},
    {"a wait is a second longer", [](Model&, Effects& effects) { rename(effects, "timeout 20", "timeout 21"); }},
    {"a command is not sent",
     [](Model&, Effects& effects) {
       if (has(effects, "................. DEASSOC ")) effects.erase(lineWith(effects, "send zigbee"));
     }},
    {"a datagram has another byte",
     [](Model&, Effects& effects) {
       const auto sent = lineWith(effects, "send ha");
       if (sent != effects.end()) sent->bytes.back() = 1;
     }},
    {"an event has another byte",
     [](Model&, Effects& effects) {
       const auto created = lineWith(effects, "event 7");
       if (created != effects.end()) created->bytes[8 + 180] = 'd';
     }},
    {"a time-out forgets whose event was before",
     [](Model&, Effects& effects) { rename(effects, "event 2 source 2", "event 2 source 0"); }},
    {"a state is entered too late",
     [](Model&, Effects& effects) {
       const auto found = lineWith(effects, "Association failed (Zigbee)");
       if (found != effects.end()) found->state.replace(0, sizeof "state 0" - 1, "state 1");
     }},
    {"a time-out ends the state",
     [](Model& model, Effects& effects) {
       if (has(effects, "event 2")) model.state = 0;
     }},
    {"a final event is remembered",
     [](Model& model, Effects& effects) {
       if (has(effects, "event 9")) model.lastEventCode = 9;
     }},
    {"a shorter text clears what stands behind it",
     [](Model& model, Effects&) {
       const std::string text = model.cmdtype.text();
       model.cmdtype.clear();
       model.cmdtype.setText(text);
     }},
    {"a fixed line is formatted, too",
     [](Model& model, Effects& effects) {
       if (has(effects, "ZW_ASSOC_QUERY:timeout")) model.scratch.setText("ZW_ASSOC_QUERY:timeout");
     }},
    {"the device id counts up",
     [](Model& model, Effects& effects) {
       if (has(effects, "collecting info of zigbee device")) ++model.deviceId;
     }},
    {"a device that is done stays pending",
     [](Model& model, Effects& effects) {
       if (has(effects, "Sending Packet to Haserver Success")) model.zwWork.setNumber(600, 2);
     }},
};

// The first of the runs that shows the alteration.
std::vector<Step> aRunThatShows(Library& library, Alteration alteration) {
  for (std::size_t seed = 1; seed <= kRuns; ++seed) {
    std::vector<Step> steps = Generator(seed).run(kAlteredSteps);
    if (compare(library, steps, alteration)) return steps;
  }
  return {};
}

}  // namespace

TEST(AlteredModelTest, IsFoundOutByAShortRun) {
  Library library;
  for (const auto& row : kAlterations) {
    const std::vector<Step> steps = aRunThatShows(library, row.alteration);
    ASSERT_FALSE(steps.empty()) << row.name << ": not found out";
    const std::vector<Step> least = shortest(library, steps, row.alteration);
    EXPECT_LE(least.size(), kShort) << row.name << "\n" << describe(least);
    EXPECT_TRUE(compare(library, least, row.alteration)) << row.name << "\n" << describe(least);
    EXPECT_FALSE(compare(library, least)) << row.name << ": it is not the alteration that was found\n"
                                          << describe(least);
  }
}

TEST(AlteredModelTest, IsReportedReadably) {
  Library library;
  const std::vector<Step> steps = {call("setDevName", std::string("Lamp")), call("wait", 7), call("sendCancelTo", 9),
                                   call("addingDone")};
  EXPECT_EQ(report(library, steps, kAlterations[1].alteration),
            "after\n  1. sendCancelTo(9)\n"
            "effect 1: the library says  log 2 libTembraAssoc:Unknown cancel type\n"
            "  the model says    log 1 libTembraAssoc:Unknown cancel type");
}

}  // namespace oracle
