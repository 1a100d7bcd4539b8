// The library allocates nothing of its own: neither for a datagram nor for a call.
#include <gtest/gtest.h>

#include "rig/own_allocations.h"

namespace {

TEST(Allocations, ADatagramTakesNone) {
  constexpr int datagrams = 20;
  for (const bench::Datagram& datagram : bench::datagramsOfAllFlows()) {
    // The tokens of a JSON text are the router's tokenizer's.
    EXPECT_EQ(bench::allocationsForDatagrams(datagram, datagrams), 0U) << datagram.name;
  }
}

TEST(Allocations, APublicCallTakesNone) {
  const std::vector<bench::CallCount> counts = bench::allocationsOfPublicCalls();
  EXPECT_GE(counts.size(), 30U);
  for (const auto& [name, allocations] : counts) EXPECT_EQ(allocations, 0U) << name;
}

}  // namespace
