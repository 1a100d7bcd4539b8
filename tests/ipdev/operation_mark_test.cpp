// The mark that an operation is in progress, as a front end polls it.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <thread>

#include "kit/router.h"
#include "wire.h"

using kit::Router;

namespace {

char bridgeMac[] = "a1:b2:c3:0a:1b:2c";
char givenText[] = "givenText";

// What another thread finds in the command type as soon as it sees the mark. Nothing but the mark orders the two.
std::string commandTypeSeenWithTheMark(const std::function<void()>& operation) {
  unsigned char* mark = &idle;
  __atomic_store_n(mark, 1, __ATOMIC_RELEASE);
  std::string seen;
  std::thread poller([mark, &seen] {
    while (__atomic_load_n(mark, __ATOMIC_ACQUIRE) != 0) std::this_thread::yield();
    seen = cmdtype;
  });
  operation();
  poller.join();
  return seen;
}

}  // namespace

TEST(OperationMarkTest, WhoSeesItSeesTheCommandTypeToo) {
  Router router;
  TembraAssociation& assoc = router.connect();
  for (int round = 0; round < 50; ++round) {
    EXPECT_EQ(commandTypeSeenWithTheMark([&assoc] { assoc.Hue_addBridge(bridgeMac); }), "AddIPDevice");
    EXPECT_EQ(commandTypeSeenWithTheMark([&assoc] { assoc.Hue_addDev(bridgeMac, givenText); }), "AddHueDevice");
    EXPECT_EQ(commandTypeSeenWithTheMark([&assoc] { assoc.Hue_refreshBridge(bridgeMac, givenText); }),
              "RefreshIPDevice");
    EXPECT_EQ(commandTypeSeenWithTheMark([&assoc] { assoc.Hue_remove(bridgeMac); }), "RemoveIPDevice");
    EXPECT_EQ(commandTypeSeenWithTheMark([&assoc] { assoc.Nest_add(givenText); }), "AddIPDevice");
    EXPECT_EQ(commandTypeSeenWithTheMark([&assoc] { assoc.Nest_remove(); }), "RemoveIPDevice");
  }
}

// A daemon that answers while the command is still under way: the answer is handled when the command is done.
TEST(OperationMarkTest, AFastAnswerComesAfterTheCommand) {
  Router router;
  TembraAssociation& assoc = router.connect();
  for (int round = 0; round < 200; ++round) {
    std::thread daemon([&router] {
      while (router.hue().receive().empty()) {
      }
      router.hue().post(hueAnswer(4));
    });
    assoc.Hue_addBridge(bridgeMac);
    daemon.join();
    router.settle();
    ASSERT_EQ(router.state(), "state 0 idle 1 last 0 cancel 0 radio 3 cmdtype AddIPDevice") << round;
    ASSERT_EQ(router.takeEvents().at(0).state, "state 0 idle 0 last 0 cancel 0 radio 3 cmdtype AddIPDevice");
  }
}
