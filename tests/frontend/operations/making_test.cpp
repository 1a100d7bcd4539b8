// What can go wrong when the kit is made.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <tembra/frontend.h>

#include <cerrno>

namespace {

int whyNot(const tembra_options* options) {
  errno = 0;
  tembra_frontend* kit = tembra_frontend_new(options);
  const int error = errno;
  tembra_frontend_free(kit);
  return kit == nullptr ? error : 0;
}

// A structure of a later version, which this kit does not know.
template <typename Structure>
struct Later {
  Structure known;
  int newer;
};

tembra_options inRole(int role) { return {sizeof(tembra_options), role, 0, nullptr, nullptr}; }

TEST(Making, RefusesWhatItDoesNotKnow) {
  tembra_options smaller = inRole(1);
  smaller.size -= 1;
  EXPECT_EQ(whyNot(&smaller), EINVAL);
  for (const int role : {-1, 7}) {
    const tembra_options options = inRole(role);
    EXPECT_EQ(whyNot(&options), EINVAL) << role;
  }
  for (int role = 0; role <= 6; ++role) {
    const tembra_options options = inRole(role);
    EXPECT_EQ(whyNot(&options), 0) << role;
  }
}

TEST(Making, TakesTheOptionsOfALaterVersion) {
  Later<tembra_options> options = {inRole(1), 0};
  options.known.size = sizeof options;
  EXPECT_EQ(whyNot(&options.known), 0);
}

TEST(State, IsFilledInAsFarAsTheProgramAndTheKitKnowIt) {
  tembra_frontend* kit = tembra_frontend_new(nullptr);
  Later<tembra_state> state{};
  EXPECT_EQ(tembra_frontend_state(kit, &state.known), EINVAL);
  EXPECT_EQ(tembra_frontend_state(kit, nullptr), EINVAL);
  state.known.size = sizeof state;
  state.known.ends_in = 7;
  state.newer = 9;
  EXPECT_EQ(tembra_frontend_state(kit, &state.known), 0);
  EXPECT_EQ(state.known.size, sizeof state);
  EXPECT_EQ(state.known.ends_in, -1);
  EXPECT_EQ(state.newer, 9);
  tembra_frontend_free(kit);
}

TEST(Making, GivesAProcessOneKit) {
  tembra_frontend* kit = tembra_frontend_new(nullptr);
  EXPECT_EQ(whyNot(nullptr), EBUSY);
  tembra_frontend_free(kit);
  EXPECT_EQ(whyNot(nullptr), 0);
}

TEST(Making, SaysThatDescriptorsAreShort) {
  rlimit before{};
  getrlimit(RLIMIT_NOFILE, &before);
  const rlimit none = {0, before.rlim_max};
  setrlimit(RLIMIT_NOFILE, &none);
  EXPECT_EQ(whyNot(nullptr), EMFILE);
  setrlimit(RLIMIT_NOFILE, &before);
  EXPECT_EQ(whyNot(nullptr), 0);
}

}  // namespace
