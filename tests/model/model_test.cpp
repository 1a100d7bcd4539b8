// Random runs on the library and on the model.
#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>

#include "comparison.h"
#include "generator.h"
#include "kit/sanitized.h"

namespace oracle {
namespace {

constexpr std::size_t kSteps = 60;
constexpr unsigned long kUsualSequences = 300;
constexpr unsigned long kSequences = kit::kIsSanitized ? 100 : kUsualSequences;
constexpr unsigned long kUsualSeed = 20240501;

unsigned long setting(const char* name, unsigned long otherwise) {
  const char* text = std::getenv(name);
  return text == nullptr ? otherwise : std::strtoul(text, nullptr, 10);
}

std::string howToRepeat(unsigned long seed) {
  return "TEMBRA_MODEL_SEED=" + std::to_string(seed) + " TEMBRA_MODEL_SEQUENCES=1 shows it again";
}

}  // namespace

TEST(ModelTest, TheLibraryDoesWhatTheModelSays) {
  Library library;
  Coverage coverage;
  const unsigned long sequences = setting("TEMBRA_MODEL_SEQUENCES", kSequences);
  const unsigned long firstSeed = setting("TEMBRA_MODEL_SEED", kUsualSeed);
  for (unsigned long seed = firstSeed; seed < firstSeed + sequences; ++seed) {
    const std::vector<Step> steps = Generator(seed).run(kSteps);
    if (const auto found = compare(library, steps, nullptr, &coverage)) {
      FAIL() << "after " << found->steps << " steps " << found->what << "\n"
             << howToRepeat(seed) << "; shortest:\n"
             << report(library, steps);
    }
  }
  EXPECT_EQ(coverage.steps(), sequences * kSteps);
  std::cout << coverage.text();
  if (sequences >= kUsualSequences) {
    EXPECT_EQ(coverage.unreached(), std::vector<std::string>{}) << "not reached by " << sequences << " runs";
  }
}

}  // namespace oracle
