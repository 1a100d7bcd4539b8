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
