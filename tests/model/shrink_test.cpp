// What is left of a run.
#include "shrink.h"

#include <gtest/gtest.h>

#include "generator.h"
#include "operations.h"

namespace oracle {
namespace {

std::vector<Step> numbered(int count) {
  std::vector<Step> steps;
  steps.reserve(static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) steps.push_back(call("wait", i));
  return steps;
}

std::vector<int> numbersOf(const std::vector<Step>& steps) {
  std::vector<int> numbers;
  numbers.reserve(steps.size());
  for (const Step& step : steps) numbers.push_back(step.number);
  return numbers;
}

// Shows it when these numbers come in this order, with the last of them.
Shows inOrder(const std::vector<int>& wanted) {
  return [wanted](const std::vector<Step>& steps) -> std::size_t {
    std::size_t next = 0;
    for (std::size_t i = 0; i < steps.size(); ++i) {
      if (steps[i].number == wanted[next] && ++next == wanted.size()) return i + 1;
    }
    return 0;
  };
}

}  // namespace

TEST(ShrinkTest, LeavesExactlyWhatIsNeeded) {
  for (const std::vector<int>& needed : {std::vector<int>{0}, {59}, {7}, {3, 4}, {0, 59}, {1, 20, 21, 40, 58}}) {
    EXPECT_EQ(numbersOf(shrink(numbered(60), inOrder(needed))), needed);
  }
}

// Step 1 shows it alone, and with both of the others, but not with one of them: leaving out single steps ends too
// early.
TEST(ShrinkTest, TriesEveryPartOfAShortRun) {
  const Shows shows = [](const std::vector<Step>& steps) -> std::size_t {
    const bool hasOne = inOrder({1})(steps) != 0;
    return hasOne && steps.size() != 2 ? steps.size() : 0;
  };
  const std::vector<Step> steps = {call("wait", 2), call("wait", 1), call("wait", 3)};
  EXPECT_EQ(numbersOf(shrink(steps, shows)), std::vector<int>{1});
}

TEST(ShrinkTest, KeepsARunThatShowsNothing) {
  EXPECT_EQ(numbersOf(shrink(numbered(3), inOrder({9}))), (std::vector<int>{0, 1, 2}));
}

TEST(GeneratorTest, TheSameSeedGivesTheSameRun) {
  constexpr std::size_t kSteps = 60;
  const std::string once = describe(Generator(5).run(kSteps));
  EXPECT_EQ(once, describe(Generator(5).run(kSteps)));
  EXPECT_NE(once, describe(Generator(6).run(kSteps)));
}

}  // namespace oracle
