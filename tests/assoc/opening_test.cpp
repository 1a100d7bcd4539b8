// Opening the connection.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstring>
#include <thread>

#include "kit/router_test.h"

using kit::lines;
using kit::Node;

namespace {

using OpeningTest = kit::RouterTest;

}  // namespace

TEST_F(OpeningTest, StepsInOrder) {
  router.assoc();
  router.watch(kit::kWatchConnection | kit::kWatchTimeouts);
  EXPECT_EQ(router.open(), 0);
  EXPECT_EQ(router.takeTrace(), lines({
                                    "socket 2 2 17",
                                    "priority 1",
                                    "bind 127.255.255.4:8888 length 16",
                                    "popen r nvram_get 2860 MeshSlaveID",
                                    "thread",
                                    "log 0 libTembraAssoc:entered receive thread",
                                    "log 0 libTembraAssoc:Thread created successfully",
                                    "detach",
                                    "timeout 180",
                                }));
}

TEST_F(OpeningTest, LeavesTheConnectionOpenAndTheTextsReset) {
  TembraAssociation& assoc = router.assoc();
  std::memset(cmdtype, 'x', sizeof cmdtype);
  assoc_meshID = 77;
  ASSERT_EQ(router.open(), 0);
  EXPECT_EQ(assoc.running, 1);
  EXPECT_NE(assoc.sock, 0);
  EXPECT_EQ(assoc.closeMark, 0);
  EXPECT_EQ(local_meshID, 3);
  EXPECT_EQ(assoc_meshID, -1);
  EXPECT_STREQ(tempStr, "3\n");
  EXPECT_TRUE(std::all_of(std::begin(cmdtype), std::end(cmdtype), [](char c) { return c == 0; }));
}

TEST_F(OpeningTest, ASecondOpeningFailsAndLeavesTheFirst) {
  TembraAssociation& assoc = router.connect();
  assoc.addDevZigbeeZwave();
  router.zwave().send(Node(5));
  const int sock = assoc.sock;
  const std::string state = router.state();
  router.forget();
  router.nvram().answerWith("echo 9");
  router.watch(kit::kWatchConnection);
  EXPECT_EQ(router.open(), -1);
  EXPECT_EQ(router.takeTrace(), lines({
                                    "socket 2 2 17",
                                    "priority 1",
                                    "bind 127.255.255.4:8888 length 16 -> EADDRINUSE",
                                    "stderr Address already in use: libTembraAssoc:Assoc binding failed",
                                    "close",
                                }));
  EXPECT_EQ(assoc.sock, sock);
  EXPECT_EQ(assoc.running, 1);
  EXPECT_EQ(local_meshID, 3);
  EXPECT_EQ(assoc_meshID, 3);
  EXPECT_EQ(router.state(), state);
  router.zwave().send(Node(5));
  EXPECT_EQ(assoc.assocState, ZW_ASSOC_QUERY) << "the first connection still works";
}

TEST_F(OpeningTest, FailsWhileAnotherProgramHoldsTheAddress) {
  TembraAssociation& assoc = router.assoc();
  {
    const kit::Peer other = router.from("127.255.255.4", 8888);
    EXPECT_EQ(router.open(), -1);
    EXPECT_EQ(assoc.sock, 0);
    EXPECT_EQ(assoc.running, 0);
    EXPECT_EQ(router.takeTrace(), lines({"stderr Address already in use: libTembraAssoc:Assoc binding failed"}));
  }
  EXPECT_EQ(router.open(), 0);
}

TEST_F(OpeningTest, AnOperationStartedAtOnceIsNotReset) {
  TembraAssociation& assoc = router.assoc();
  for (int round = 0; round < 50; ++round) {
    ASSERT_EQ(assoc.checkAssocConnection(), 0);
    assoc.addDevZigbeeZwave();
    router.settle();
    ASSERT_EQ(router.state(), "state 1 idle 0 last 0 cancel 3 radio 0 cmdtype AddDevice") << "round " << round;
    router.close();
  }
}

TEST_F(OpeningTest, ResetsIdleAndTheCancelTargetAndNothingElse) {
  TembraAssociation& assoc = router.connect();
  assoc.addDevZigbeeZwave();
  router.zwave().send(Node(5));
  DevId = 12;
  assoc.setDevName(const_cast<char*>("Lamp"));
  router.close();
  EXPECT_EQ(router.state(), "state 4 idle 0 last 3 cancel 2 radio 2 cmdtype AddingSensor");
  ASSERT_EQ(router.open(), 0);
  EXPECT_EQ(router.state(), "state 4 idle 1 last 3 cancel 0 radio 2 cmdtype ");
  EXPECT_EQ(DevId, 12);
  EXPECT_STREQ(assoc.devName, "Lamp");
  EXPECT_EQ(assoc.zwNodeRx.nodeId, 5);
  EXPECT_EQ(assoc.closeMark, -1);
}

TEST_F(OpeningTest, TheReceiveThreadTakesNoSignal) {
  sigset_t before;
  sigemptyset(&before);
  sigaddset(&before, SIGUSR2);
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
  TembraAssociation& assoc = router.connect();
  sigset_t after;
  pthread_sigmask(SIG_SETMASK, nullptr, &after);
  for (int signal = 1; signal < SIGRTMIN; ++signal) {
    EXPECT_EQ(sigismember(&after, signal), sigismember(&before, signal)) << "the caller's own mask is as it was";
  }
  sigset_t inThread;
  sigemptyset(&inThread);
  router.onEvent([&inThread](AssocEvent*) { pthread_sigmask(SIG_SETMASK, nullptr, &inThread); });
  assoc.addDevZigbeeZwave();
  router.zwave().send(Node(5));
  for (const int signal : {SIGINT, SIGTERM, SIGALRM, SIGCHLD, SIGUSR1, SIGWINCH}) {
    EXPECT_EQ(sigismember(&inThread, signal), 1) << strsignal(signal);
  }
}

TEST_F(OpeningTest, ChildrenDoNotInheritTheSocket) {
  const TembraAssociation& assoc = router.connect();
  EXPECT_EQ(fcntl(assoc.sock, F_GETFD) & FD_CLOEXEC, FD_CLOEXEC);
}

TEST_F(OpeningTest, AChildOfTheSettingsCommandThatLingersDoesNotHoldTheAddress) {
  router.nvram().answerWith("(sleep 5 </dev/null >/dev/null 2>&1 &)\necho 4");
  router.connect();
  EXPECT_EQ(local_meshID, 4);
  router.close();
  EXPECT_EQ(router.open(), 0);
}

TEST_F(OpeningTest, WithStandardInputClosedTheConnectionCanBeClosedToo) {
  ASSERT_EQ(::close(STDIN_FILENO), 0);
  TembraAssociation& assoc = router.connect();
  EXPECT_GT(assoc.sock, STDERR_FILENO) << "descriptor 0 would mean that nothing is open";
  EXPECT_EQ(fcntl(assoc.sock, F_GETFD) & FD_CLOEXEC, FD_CLOEXEC);
  EXPECT_EQ(fcntl(STDIN_FILENO, F_GETFD), -1);
  assoc.addDevZigbeeZwave();
  router.zwave().send(Node(5));
  EXPECT_EQ(assoc.assocState, ZW_ASSOC);
  const int sock = assoc.sock;
  router.close();
  EXPECT_EQ(fcntl(sock, F_GETFD), -1);
  EXPECT_EQ(router.open(), 0);
}
