// Strict mode against other users who spoof datagrams all the time: the system does the same at the same moments.
#include <gtest/gtest.h>

#include <cstdlib>

#include "campaign/child.h"
#include "campaign/plan.h"

namespace campaign {
namespace {

constexpr unsigned long kSeeds = 52;  // every flow under four scenarios

std::string played(unsigned long seed, Spoofing spoofing) {
  Plan plan = planFor(seed);
  plan.spoofing = spoofing;
  const Child child = playInChild(plan);
  EXPECT_EQ(child.status, 0) << plan.text() << child.report << child.errors;
  return child.report;
}

unsigned long settingOf(const char* name, unsigned long otherwise) {
  const char* text = std::getenv(name);
  return text == nullptr ? otherwise : std::strtoul(text, nullptr, 10);
}

// Seeds in a row are the scenarios of one flow: a prime step goes through the flows.
unsigned long seedOf(unsigned long run) { return settingOf("TEMBRA_CAMPAIGN_SEED", 0) + run * 53; }

}  // namespace

TEST(Spoofers, ChangeNothingInStrictMode) {
  for (unsigned long run = 0; run < settingOf("TEMBRA_CAMPAIGN_RUNS", kSeeds) && !HasFailure(); ++run) {
    const unsigned long seed = seedOf(run);
    const std::string undisturbed = played(seed, {.isStrict = true, .hasSpoofers = false});
    EXPECT_NE(undisturbed, "");
    EXPECT_EQ(played(seed, {.isStrict = true, .hasSpoofers = true}), undisturbed) << planFor(seed).text();
  }
}

TEST(Spoofers, ChangeMostRunsWithoutStrictMode) {
  constexpr unsigned long runs = 20;
  unsigned long changed = 0;
  for (unsigned long run = 0; run < runs; ++run) {
    const std::string undisturbed = played(seedOf(run), {.isStrict = false, .hasSpoofers = false});
    if (played(seedOf(run), {.isStrict = false, .hasSpoofers = true}) != undisturbed) ++changed;
  }
  EXPECT_GT(changed, runs / 2);
}

}  // namespace campaign
