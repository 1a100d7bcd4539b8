// Random runs of the whole system: every flow with every fault, each in a process and in a time of its own.
#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>
#include <map>
#include <sstream>
#include <string>

#include "campaign/child.h"
#include "campaign/plan.h"
#include "kit/sanitized.h"

namespace campaign {
namespace {

constexpr std::size_t kMostFailures = 5;

// Under a sanitizer a third of the pairs: each flow with some scenarios, each scenario with some flows.
constexpr unsigned long kApart = 3;

unsigned long setting(const char* name, unsigned long otherwise) {
  const char* text = std::getenv(name);
  return text == nullptr ? otherwise : std::strtoul(text, nullptr, 10);
}

/// How often everything happened that a campaign may come by.
using Reached = std::map<std::string, int>;

/// What so many runs come by; a campaign that does not has lost its way.
struct Landmark {
  unsigned long runs;
  const char* what;
};

constexpr Landmark kLandmarks[] = {
    {208, "event 2"},
    {208, "event 3"},
    {208, "event 4"},
    {208, "event 5"},
    {208, "event 6"},
    {208, "event 7"},
    {208, "event 9"},
    {208, "event 11"},
    {208, "event 12"},
    {208, "event 21"},
    {208, "event 22"},
    {208, "event 23"},
    {208, "event 25"},
    {208, "event 26"},
    {208, "event 29"},
    {208, "event 30"},
    {208, "event 41"},
    {208, "event 43"},
    {208, "event 46"},
    {1000, "event 27"},
    {1000, "event 28"},
    {1000, "event 42"},
    {1000, "event 44"},
    {1000, "event 45"},
    {208, "add: none"},
    {208, "add: cancelled"},
    {208, "add: already-known"},
    {208, "add: device-silent"},
    {208, "add: nobody-pressed"},
    {208, "add: radio-failed"},
    {208, "add: unknown-kind"},
    {208, "remove: none"},
    {208, "remove: not-in-list"},
    {208, "remove: radio-failed"},
    {208, "reset: none"},
    {208, "hue-add-bridge: none"},
    {208, "hue-discover: none"},
    {208, "hue-remove: other-answer"},
    {208, "nest-link: none"},
    {208, "nest-unlink: nest-refused"},
    {208, "nest-link: no-server"},
    {4000, "add: cancelled-joined"},
    {4000, "add: connection-lost"},
    {4000, "add: no-radio-server"},
};

void count(const std::string& lines, Reached& reached) {
  std::istringstream stream(lines);
  for (std::string line; std::getline(stream, line);) ++reached[line];
}

std::string failureText(const Plan& plan, const Child& child) {
  const std::string seed = std::to_string(plan.seed);
  return plan.text() + "wait status " + std::to_string(child.status) + "\n" + child.report + "the router's timeline\n" +
         child.timeline + "standard error\n" + child.errors + "TEMBRA_CAMPAIGN_SEED=" + seed +
         " TEMBRA_CAMPAIGN_RUNS=1 shows it again\n";
}

}  // namespace

TEST(CampaignTest, TheKitKeepsItsPromisesWhateverGoesWrong) {
  const unsigned long first = setting("TEMBRA_CAMPAIGN_SEED", 0);
  const unsigned long wanted = setting("TEMBRA_CAMPAIGN_RUNS", 0);
  const unsigned long runs = wanted != 0 ? wanted : pairs();
  const unsigned long apart = wanted == 0 && kit::kIsSanitized ? kApart : 1;
  std::size_t failures = 0;
  Reached reached;
  for (unsigned long seed = first; seed < first + runs && failures < kMostFailures; seed += apart) {
    const Plan plan = planFor(seed);
    const Child child = playInChild(plan);
    if (child.status == 0) {
      count(child.report, reached);
    } else {
      ++failures;
      ADD_FAILURE() << failureText(plan, child);
    }
  }
  for (const Landmark& landmark : kLandmarks) {
    const bool due = failures == 0 && first == 0 && runs >= landmark.runs && apart == 1;
    EXPECT_TRUE(!due || reached.contains(landmark.what)) << landmark.what << " was not reached";
  }
  for (const auto& [what, times] : reached) std::cout << times << "  " << what << "\n";
}

}  // namespace campaign
