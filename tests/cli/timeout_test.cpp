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
  const char* lastEvent;
};

void PrintTo(const TimeoutCase& row, std::ostream* out) { *out << row.name; }

const TimeoutCase kTimeoutCases[] = {
    {"NoAnswer", "joined:silence", "no device answered in time.", nullptr},
    {"NoIdentity", "identity:silence", "a device answered, but did not say in time which one it is.", "ADDING"},
    {"NoDescription", "info:silence", "the device's description could not be read in time.", "GETTING_INFO"},
};

class TimeoutTest : public testing::TestWithParam<TimeoutCase> {};

TEST_P(TimeoutTest, FailsInWords) {
  SimRouter router({"--fault", GetParam().fault});
  const Ended added = router.add("siren", {"--json"}, Clock::kFast);
  EXPECT_EQ(added.status, 1);
  EXPECT_EQ(added.sentence(), std::string("tembra-assoc: ") + GetParam().sentence);
  const std::string lines = added.output.substr(0, added.output.find_last_not_of('\n') + 1);
  const auto last = nlohmann::json::parse(lines.substr(lines.rfind('\n') + 1));
  EXPECT_EQ(last.at("event"), "TIMEOUT");
  EXPECT_EQ(last.count("source"), 0U) << "the event does not tell it";
  EXPECT_EQ(last.at("lastEvent"),
            GetParam().lastEvent == nullptr ? nlohmann::json() : nlohmann::json(GetParam().lastEvent));
  EXPECT_EQ(last.at("report").at("Reason"), "TimeoutReached");
  router.stop();
}

INSTANTIATE_TEST_SUITE_P(Answers, TimeoutTest, testing::ValuesIn(kTimeoutCases),
                         [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace tembra::test
