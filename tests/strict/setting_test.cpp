// How strict mode is switched on: by a call, or by the environment.
#include <gtest/gtest.h>
#include <tembra/service.h>

#include <cstdlib>
#include <cstring>
#include <thread>

#include "kit/router.h"

namespace {

// Null when the program runs with other rights than its user's, whatever the environment says.
const char* (*environment)() = nullptr;

const struct {
  const char* name;
  const char* (*text)();
  int strict;
} kEnvironments[] = {
    {"Unset", [] { return static_cast<const char*>(nullptr); }, 0},
    {"One", [] { return "1"; }, 1},
    {"Zero", [] { return "0"; }, 0},
    {"Empty", [] { return ""; }, 0},
    {"AnotherWord", [] { return "yes"; }, 0},
    {"OneAndMore", [] { return "10"; }, 0},
};

class StrictModeByEnvironment : public testing::TestWithParam<int> {};

}  // namespace

// Only this one is asked: a program that runs with other rights than its user's takes nothing from the user.
extern "C" char* secure_getenv(const char* name) noexcept {
  if (environment == nullptr || std::strcmp(name, "TEMBRA_STRICT") != 0) return nullptr;
  return const_cast<char*>(environment());
}

TEST_P(StrictModeByEnvironment, IsOnForTheOneTextOnly) {
  const auto& row = kEnvironments[GetParam()];
  environment = row.text;
  EXPECT_EQ(tembra_set_strict(-1), row.strict);
  environment = [] { return "1"; };  // read once
  EXPECT_EQ(tembra_set_strict(-1), row.strict);
}

INSTANTIATE_TEST_SUITE_P(Each, StrictModeByEnvironment, testing::Range(0, static_cast<int>(std::size(kEnvironments))),
                         [](const auto& info) { return kEnvironments[info.param].name; });

TEST(StrictMode, IsNotReadFromAnEnvironmentThatIsAnotherUsers) {
  setenv("TEMBRA_STRICT", "1", 1);
  EXPECT_EQ(tembra_set_strict(-1), 0);
}

// The receive thread must not read it while the front end writes it.
TEST(StrictMode, IsReadOnTheThreadThatOpensTheConnection) {
  static std::thread::id asked;
  environment = [] {
    asked = std::this_thread::get_id();
    return "0";
  };
  kit::Router router;
  router.connect();
  EXPECT_EQ(asked, std::this_thread::get_id());
}

TEST(StrictMode, IsSetByTheCallWhateverTheEnvironmentSays) {
  environment = [] { return "1"; };
  EXPECT_EQ(tembra_set_strict(0), 1);
  EXPECT_EQ(tembra_set_strict(-1), 0);
  EXPECT_EQ(tembra_set_strict(7), 0);
  EXPECT_EQ(tembra_set_strict(-5), 1);
  EXPECT_EQ(tembra_set_strict(1), 1);
}
