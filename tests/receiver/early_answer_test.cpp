// Answers that are faster than what they answer. The Logger, which is called in the middle of an operation, lets them
// come exactly then, and gives the receive thread time to run ahead.
#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "kit/router.h"

using kit::Node;
using kit::Router;

namespace {

/// The Z-Wave server answers when this line is logged.
void answerAt(Router& router, const std::string& line) {
  router.onLog([&router, line](const std::string& logged) {
    if (logged != line) return;
    router.zwave().post(Node(5).bytes());
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
  });
}

}  // namespace

TEST(EarlyAnswer, WaitsUntilTheOperationHasBegun) {
  Router router;
  TembraAssociation& assoc = router.connect();
  answerAt(router, "libTembraAssoc:inside addDevZigbeeZwave");
  assoc.addDevZigbeeZwave();
  router.settle();
  EXPECT_EQ(router.state(), "state 4 idle 0 last 3 cancel 2 radio 2 cmdtype AddingSensor");
}

TEST(EarlyAnswer, WaitsUntilTheConnectionIsOpen) {
  Router router;
  router.registerCallback();
  router.assoc().assocState = ASSOC;
  answerAt(router, "libTembraAssoc:Thread created successfully");
  ASSERT_EQ(router.open(), 0);
  router.settle();
  EXPECT_EQ(router.state(), "state 4 idle 0 last 3 cancel 2 radio 2 cmdtype AddingSensor");
}
