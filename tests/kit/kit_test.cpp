// The test kit itself: a test that trusts it must know that it sees, waits and fails as it says.
#include <gtest/gtest.h>

#include <cerrno>

#include "kit/router.h"

using kit::Call;
using kit::Clock;
using kit::Device;
using kit::lines;
using kit::Node;
using kit::Router;

TEST(KitTest, OneOperationIsOneTrace) {
  Router router;
  TembraAssociation& assoc = router.connect();
  assoc.addDevZigbeeZwave();
  router.zwave().send(Node(5));
  EXPECT_EQ(router.takeTrace(), lines({
                                    "log 0 libTembraAssoc:inside addDevZigbeeZwave",
                                    R"(send zigbee 320 "option button1" @180 "IAS")",
                                    "send zwave 236 op 1 cmd 1",
                                    "log 0 libTembraAssoc:Received Packet from Z-wave",
                                    "log 0 ................. ASSOC ...................",
                                    "log 0 libTembraAssoc:Sending cancel command to zigbee_server",
                                    R"(send zigbee 320 "network pjoin 0" @180 "cancel")",
                                    "event 3 source 2",
                                    "log 0 libTembraAssoc:Adding sensor (Z-wave)",
                                    "log 0 libTembraAssoc:timeout set to 60 sec...",
                                }));
  EXPECT_EQ(router.takeEvents().at(0).state, "state 4 idle 0 last 3 cancel 2 radio 2 cmdtype AddingSensor");
  EXPECT_EQ(router.state(), "state 4 idle 0 last 3 cancel 2 radio 2 cmdtype AddingSensor");
}

TEST(KitTest, TimePassesOnlyWhenTheTestSaysSo) {
  Router router;
  TembraAssociation& assoc = router.connect();
  assoc.addDevZigbeeZwave();
  router.advance(179);
  EXPECT_TRUE(router.takeEvents().empty());
  router.advance(1);
  ASSERT_EQ(router.takeEvents().size(), 1U);
  router.advance(1800);
  EXPECT_TRUE(router.takeEvents().empty());
}

TEST(KitTest, SendsReallyArrive) {
  Router router;
  router.connect().addDevZigbeeZwave();
  const auto sends = router.takeSends();
  ASSERT_EQ(sends.size(), 2U);
  EXPECT_EQ(router.zigbee().receive(), sends[0].bytes);
  EXPECT_EQ(router.zwave().receive(), sends[1].bytes);
  EXPECT_TRUE(router.ha().receive().empty());
}

TEST(KitTest, ErrorsStandInTheTraceInOrder) {
  Router router;
  TembraAssociation& assoc = router.connect();
  router.fail(Call::kSendto, EPERM, 1, 1);
  assoc.addDevZigbeeZwave();
  EXPECT_EQ(router.takeTrace(), lines({
                                    "log 0 libTembraAssoc:inside addDevZigbeeZwave",
                                    R"(send zigbee 320 "option button1" @180 "IAS")",
                                    "send zwave 236 op 1 cmd 1 -> EPERM",
                                    "stderr sendto error: Operation not permitted",
                                }));
}

TEST(KitTest, StrayBytesAreSeen) {
  ZigbeeCommand command{};
  command.command[0] = 'x';
  command.argument[5] = 'y';
  Router router;
  router.connect().sendToServers(SERVER_ZIGBEE, &command);
  EXPECT_EQ(router.takeTrace(), lines({R"(send zigbee 320 "x" @180 "" stray @185)"}));
}

TEST(KitTest, ASleepingCallerLetsTimeOutsHappen) {
  Router router;
  TembraAssociation& assoc = router.connect();
  router.advance(175);
  assoc.doResetFor(reset_zwave);
  EXPECT_EQ(router.takeTrace(), lines({
                                    "send zwave 236 op 5 cmd 0",
                                    "log 0 libTembraAssoc:Sending reset command to Zwave_server",
                                    "sleep 7",
                                    "log 0 libTembraAssoc:Didn't get packet for 180 secs",
                                    "log 0 libTembraAssoc:idle timeout set to 180 sec...",
                                }));
}

TEST(KitTest, AnInterruptedReceiveFails) {
  Router router;
  router.connect();
  router.interruptReceive(EINTR);
  EXPECT_EQ(router.takeTrace(), lines({
                                    "log 0 libTembraAssoc:Didn't get packet for 180 secs",
                                    "log 0 libTembraAssoc:idle timeout set to 180 sec...",
                                }));
}

TEST(KitTest, DatabaseCanBeFilledAndBroken) {
  Router router;
  TembraAssociation& assoc = router.connect();
  router.database().nextId("17").put(Device(3, "Lamp").zwave(5)).put(Device(4, "Door").zwave(6)).index(3, 1, "on");
  EXPECT_EQ(router.database().records(), 4);
  router.watch(kit::kWatchDatabase);
  EXPECT_EQ(assoc.calculateDevId(), 17);
  router.database().makeRepairable();
  EXPECT_EQ(assoc.calculateDevId(), 17);
  router.database().makeUnopenable();
  EXPECT_EQ(assoc.calculateDevId(), -1);
  EXPECT_FALSE(router.database().exists());
  EXPECT_EQ(router.takeTrace(), lines({
                                    "dpopen /tmp/ddb 6 -1",
                                    "dpclose",
                                    "dpopen /tmp/ddb 6 -1 -> failed",
                                    "stderr dpopen: broken database file",
                                    "dprepair /tmp/ddb",
                                    "dpopen /tmp/ddb 70 1",
                                    "dpclose",
                                    "dpopen /tmp/ddb 6 -1 -> failed",
                                    "stderr dpopen: broken database file",
                                    "dprepair /tmp/ddb -> failed",
                                    "dpopen /tmp/ddb 70 1 -> failed",
                                }));
}

TEST(KitTest, RealClockIsTheKernels) {
  Router router(Clock::kReal);
  router.connect();
  router.zwave().send(Node(5));
  router.close();
  EXPECT_NE(router.takeTrace().find("exited receive thread"), std::string::npos);
}
