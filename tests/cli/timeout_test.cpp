// An add whose time is over says how far it had come, whichever answer is missing.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <ostream>

#include "support/sim_router.h"

namespace tembra::test {
namespace {

struct TimeoutCase {
  const char* name;
  const char* fault;
  const char* sentence;
  const char* phase;
};

void PrintTo(const TimeoutCase& row, std::ostream* out) { *out << row.name; }

const TimeoutCase kTimeoutCases[] = {
    {"NoAnswer", "joined:silence", "No device answered in time.", "button"},
    {"NoIdentity", "identity:silence", "The device fell silent before it said which one it is.", "identity"},
    {"NoDescription", "info:silence", "The device Z-Wave node 2 fell silent while it described itself.", "description"},
};

class TimeoutTest : public testing::TestWithParam<TimeoutCase> {};

TEST_P(TimeoutTest, FailsInWords) {
  SimRouter router({"--fault", GetParam().fault});
  const Ended added = router.add("siren", {"--json", "--yes"}, Clock::kFast);
  EXPECT_EQ(added.status, 1);
  const std::string lines = added.output.substr(0, added.output.find_last_not_of('\n') + 1);
  const auto last = nlohmann::json::parse(lines.substr(lines.rfind('\n') + 1));
  EXPECT_EQ(last.at("event"), "ended");
  EXPECT_EQ(last.at("outcome"), "timed-out");
  EXPECT_EQ(last.at("ended_in"), GetParam().phase);
  EXPECT_EQ(last.at("text"), GetParam().sentence);
  router.stop();
}

INSTANTIATE_TEST_SUITE_P(Answers, TimeoutTest, testing::ValuesIn(kTimeoutCases),
                         [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace tembra::test
