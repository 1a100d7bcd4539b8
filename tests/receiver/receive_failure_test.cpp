// System calls of the receive loop that fail.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <thread>

#include "kit/router.h"
#include "occurrences.h"

using kit::Call;
using kit::Clock;
using kit::lines;
using kit::Node;
using kit::Router;

namespace {

/// How often the loop runs through within half a second.
std::size_t passesInHalfASecond(Router& router) {
  router.forget();
  std::this_thread::sleep_for(std::chrono::milliseconds(500));
  return occurrences(router.takeTrace(), "Didn't get packet");
}

// Few passes are a loop that goes on; a loop without a pause makes thousands.
constexpr std::size_t kFewestPasses = 1;
constexpr std::size_t kMostPasses = 50;

}  // namespace

TEST(ReceiveFailure, ATimeOutThatCannotBeSetIsReportedAndTheOldOneHolds) {
  Router router;
  TembraAssociation& assoc = router.connect();
  router.watch(kit::kWatchTimeouts);
  assoc.assocState = ASSOC;
  router.fail(Call::kSetTimeout, EINVAL);
  router.zwave().send(Node(5));
  const std::string trace = router.takeTrace();
  EXPECT_NE(trace.find(lines({"log 0 libTembraAssoc:timeout set to 60 sec...", "timeout 60 -> EINVAL",
                              "stderr libTembraAssoc:setsockopt: rcvtimeo: Invalid argument"})),
            std::string::npos)
      << trace;
  router.advance(179);
  EXPECT_EQ(router.takeTrace(), "");
  router.advance(1);
  EXPECT_EQ(router.takeTrace().find("log 0 libTembraAssoc:Didn't get packet for 60 secs\n"), 0U)
      << "the line tells what was wanted, not what the socket did";
}

TEST(ReceiveFailure, DatagramsAreHandledWhileNoTimeOutCanBeSet) {
  Router router;
  TembraAssociation& assoc = router.assoc();
  router.registerCallback();
  router.fail(Call::kSetTimeout, EPERM, 1000);
  ASSERT_EQ(router.open(), 0);
  assoc.addDevZigbeeZwave();
  router.zwave().send(Node(5));
  router.zwave().send(Node(5));
  EXPECT_EQ(router.takeEvents().size(), 2U);
  EXPECT_EQ(occurrences(router.takeTrace(), "stderr libTembraAssoc:setsockopt: rcvtimeo: Operation not permitted\n"),
            3U);
}

TEST(ReceiveFailure, ADescriptorThatWasClosedDoesNotSpin) {
  Router router(Clock::kReal);
  const TembraAssociation& assoc = router.connect();
  const int descriptor = assoc.sock;
  router.zwave().post(Node(5).bytes());  // so that the loop comes around and meets the closed descriptor
  syscall(SYS_close, descriptor);
  router.zwave().post(Node(5).bytes());
  const std::size_t passes = passesInHalfASecond(router);
  EXPECT_GE(passes, kFewestPasses);
  EXPECT_LE(passes, kMostPasses);
}

TEST(ReceiveFailure, ADescriptorThatIsNoSocketDoesNotSpin) {
  Router router(Clock::kReal);
  const TembraAssociation& assoc = router.connect();
  const int null = open("/dev/null", O_RDWR | O_CLOEXEC);
  dup3(null, assoc.sock, O_CLOEXEC);
  router.zwave().post(Node(5).bytes());
  const std::size_t passes = passesInHalfASecond(router);
  EXPECT_GE(passes, kFewestPasses);
  EXPECT_LE(passes, kMostPasses);
  close(null);
}
