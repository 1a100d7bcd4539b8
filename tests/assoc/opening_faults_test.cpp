// Opening the connection when the system refuses.
#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>

#include "kit/router.h"

using kit::Call;
using kit::lines;
using kit::Router;

namespace {

void expectClosed(const TembraAssociation& assoc) {
  EXPECT_EQ(assoc.sock, 0);
  EXPECT_EQ(assoc.running, 0);
  EXPECT_EQ(local_meshID, -1);
}

}  // namespace

TEST(OpeningFaultsTest, NoSocket) {
  Router router;
  const TembraAssociation& assoc = router.assoc();
  router.watch(kit::kWatchConnection);
  router.fail(Call::kSocket, EMFILE);
  EXPECT_EQ(router.open(), -1);
  EXPECT_EQ(router.takeTrace(),
            lines({"socket 2 2 17 -> EMFILE", "stderr Too many open files: libTembraAssoc:socket()"}));
  expectClosed(assoc);
}

TEST(OpeningFaultsTest, NoPriority) {
  Router router;
  const TembraAssociation& assoc = router.assoc();
  router.watch(kit::kWatchConnection);
  router.fail(Call::kSetPriority, EPERM);
  EXPECT_EQ(router.open(), -1);
  EXPECT_EQ(router.takeTrace(), lines({
                                    "socket 2 2 17",
                                    "priority 1 -> EPERM",
                                    "stderr Operation not permitted: libTembraAssoc:setsockopt failed",
                                    "close",
                                }));
  expectClosed(assoc);
}

TEST(OpeningFaultsTest, NoAddress) {
  Router router;
  const TembraAssociation& assoc = router.assoc();
  router.watch(kit::kWatchConnection);
  router.fail(Call::kBind, EACCES);
  EXPECT_EQ(router.open(), -1);
  EXPECT_EQ(router.takeTrace(), lines({
                                    "socket 2 2 17",
                                    "priority 1",
                                    "bind 127.255.255.4:8888 length 16 -> EACCES",
                                    "stderr Permission denied: libTembraAssoc:Assoc binding failed",
                                    "close",
                                }));
  expectClosed(assoc);
}

TEST(OpeningFaultsTest, EachLeavesRoomForTheNextTry) {
  for (const Call call : {Call::kSocket, Call::kSetPriority, Call::kBind}) {
    SCOPED_TRACE(static_cast<int>(call));
    static Router router;
    router.fail(call, EIO);
    EXPECT_EQ(router.open(), -1);
    EXPECT_EQ(router.open(), 0);
    router.close();
  }
}

TEST(OpeningFaultsTest, WithoutAThreadTheConnectionIsOpenAllTheSame) {
  Router router;
  const TembraAssociation& assoc = router.assoc();
  router.watch(kit::kWatchConnection);
  std::memset(cmdtype, 'x', sizeof cmdtype);
  router.fail(Call::kCreateThread, EAGAIN);
  EXPECT_EQ(router.open(), 0);
  EXPECT_EQ(router.takeTrace(), lines({
                                    "socket 2 2 17",
                                    "priority 1",
                                    "bind 127.255.255.4:8888 length 16",
                                    "popen r nvram_get 2860 MeshSlaveID",
                                    "thread -> EAGAIN",
                                    "log 0 libTembraAssoc:can't create thread :[Resource temporarily unavailable]",
                                }));
  EXPECT_STREQ(tempStr, "libTembraAssoc:can't create thread :[Resource temporarily unavailable]");
  EXPECT_EQ(assoc.running, 1);
  EXPECT_NE(assoc.sock, 0);
  EXPECT_EQ(cmdtype[0], 0);
  EXPECT_EQ(cmdtype[59], 0);
}

TEST(OpeningFaultsTest, WithoutAThreadSendingAndClosingWork) {
  Router router;
  router.fail(Call::kCreateThread, EAGAIN);
  TembraAssociation& assoc = router.connect();
  assoc.cmdToZwave(zwave_cmd_add);
  EXPECT_EQ(router.takeTrace(), lines({"send zwave 236 op 1 cmd 1"}));
  router.close();
  EXPECT_EQ(assoc.sock, 0);
  EXPECT_EQ(router.open(), 0);
}

// What the system says it started need not come: the opening waits for a thread, but not for ever.
TEST(OpeningFaultsTest, AThreadThatNeverComesDoesNotHoldTheOpening) {
  Router router;
  TembraAssociation& assoc = router.assoc();
  router.watch(kit::kWatchConnection);
  router.fail(Call::kCreateThread, 0);
  router.fail(Call::kAwaitChange, ETIMEDOUT);
  EXPECT_EQ(router.open(), 0);
  EXPECT_EQ(router.takeTrace(), lines({
                                    "socket 2 2 17",
                                    "priority 1",
                                    "bind 127.255.255.4:8888 length 16",
                                    "popen r nvram_get 2860 MeshSlaveID",
                                    "thread -> 0",
                                    "log 0 libTembraAssoc:Thread created successfully",
                                }));
  EXPECT_EQ(assoc.running, 1);
  router.close();
  ASSERT_EQ(router.open(), 0);
  assoc.addDevZigbeeZwave();
  router.zwave().send(kit::Node(5));
  EXPECT_EQ(assoc.assocState, ZW_ASSOC);
}

TEST(OpeningFaultsTest, AThreadThatComesLateServesTheConnection) {
  Router router;
  router.fail(Call::kAwaitChange, ETIMEDOUT);
  TembraAssociation& assoc = router.connect();
  router.settle();
  assoc.addDevZigbeeZwave();
  router.zwave().send(kit::Node(5));
  EXPECT_EQ(assoc.assocState, ZW_ASSOC);
  EXPECT_EQ(router.takeEvents().size(), 1U);
}

TEST(OpeningFaultsTest, AWaitMayWakeForNoReason) {
  Router router;
  router.fail(Call::kAwaitChange, 0, 3);
  TembraAssociation& assoc = router.connect();
  assoc.addDevZigbeeZwave();
  router.settle();
  EXPECT_EQ(router.state(), "state 1 idle 0 last 0 cancel 3 radio 0 cmdtype AddDevice");
}

TEST(OpeningFaultsTest, WithoutAPipeTheMeshIdIsZero) {
  Router router;
  std::strcpy(tempStr, "42");
  router.fail(Call::kPopen, ENOMEM);
  router.connect();
  EXPECT_EQ(local_meshID, 0);
  EXPECT_STREQ(tempStr, "");
}
