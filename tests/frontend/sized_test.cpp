// A structure that a later version has made longer, between a program and a kit of different versions.
#include "sized.h"

#include <gtest/gtest.h>

namespace {
struct Grown {
  std::size_t size;
  int first;
  int later;  // of version 1.1
};
constexpr std::size_t kOld = offsetof(Grown, later);
}  // namespace

template <>
inline constexpr std::size_t tembra::frontend::kFirstSize<Grown> = kOld;

namespace tembra::frontend {
namespace {

TEST(Sized, TakesWhatAnOlderProgramHas) {
  Grown known{0, 1, 2};
  EXPECT_TRUE(takeIn(known, Grown{kOld, 7, 8}));
  EXPECT_EQ(known.size, sizeof known);
  EXPECT_EQ(known.first, 7);
  EXPECT_EQ(known.later, 2) << "the default, because an older program has no such member";
}

TEST(Sized, TakesWhatItKnowsOfANewerProgram) {
  struct {
    Grown known;
    int newer;
  } program{{sizeof program, 7, 8}, 9};
  auto known = sized<Grown>();
  EXPECT_TRUE(takeIn(known, program.known));
  EXPECT_EQ(known.size, sizeof known);
  EXPECT_EQ(known.later, 8);
}

TEST(Sized, FillsInWhatAnOlderProgramHasRoomFor) {
  Grown program{kOld, 0, 5};
  EXPECT_TRUE(handOut(&program, Grown{sizeof(Grown), 7, 8}));
  EXPECT_EQ(program.size, kOld);
  EXPECT_EQ(program.first, 7);
  EXPECT_EQ(program.later, 5) << "the program has something else there";
}

TEST(Sized, LeavesWhatOnlyANewerProgramHas) {
  struct {
    Grown known;
    int newer;
  } program{{sizeof program, 0, 0}, 9};
  EXPECT_TRUE(handOut(&program.known, Grown{sizeof(Grown), 7, 8}));
  EXPECT_EQ(program.known.size, sizeof program);
  EXPECT_EQ(program.known.later, 8);
  EXPECT_EQ(program.newer, 9);
}

TEST(Sized, RefusesASizeThatNoVersionHas) {
  Grown program{kOld - 1, 3, 4};
  EXPECT_FALSE(handOut(&program, Grown{sizeof(Grown), 7, 8}));
  EXPECT_FALSE(handOut<Grown>(nullptr, Grown{}));
  Grown known{0, 1, 2};
  EXPECT_FALSE(takeIn(known, program));
  EXPECT_EQ(program.first + known.first, 4) << "neither has changed";
}

}  // namespace
}  // namespace tembra::frontend
