// Time-outs: of an operation, and of nothing.
#include <cerrno>
#include <climits>

#include "nodes.h"
#include "stories.h"

using kit::lines;
using kit::Node;

namespace {

using TimeOut = Stories;

std::string idleTimeout(int seconds) {
  return lines({"log 0 libTembraAssoc:Didn't get packet for " + std::to_string(seconds) + " secs",
                "log 0 libTembraAssoc:idle timeout set to 180 sec...", "timeout 180"});
}

const std::string kZigbeeCancel = lines({"log 0 libTembraAssoc:Sending cancel command to zigbee_server",
                                         R"(send zigbee 320 "network pjoin 0" @180 "cancel")"});
const std::string kZwaveCancel =
    lines({"log 0 libTembraAssoc:Sending cancel command to zwave_server", "send zwave 236 op 4 cmd 0"});
const std::string kUnknownCancel = lines({"log 2 libTembraAssoc:Unknown cancel type"});

// What a time-out sends to the radios, by cancel target.
const struct {
  int cancelTarget;
  std::string sent;
} kCancels[] = {{0, kUnknownCancel}, {1, kZigbeeCancel},  {2, kZwaveCancel}, {3, kZigbeeCancel + kZwaveCancel},
                {4, kUnknownCancel}, {-1, kUnknownCancel}};

}  // namespace

TEST_F(TimeOut, WithNothingInProgressIsOnlyLogged) {
  EXPECT_EQ(wait(179), "");
  EXPECT_EQ(wait(1), idleTimeout(180));
  EXPECT_EQ(wait(179), "");
  EXPECT_EQ(wait(1), idleTimeout(180));
  EXPECT_EQ(wait(3L * 180), idleTimeout(180) + idleTimeout(180) + idleTimeout(180));
}

TEST_F(TimeOut, OfAnOperationCancelsAndTellsInEveryState) {
  for (const int state : {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 1000, INT_MAX, -1, INT_MIN}) {
    for (const auto& cancel : kCancels) {
      assoc.assocState = state;
      assoc.cancelTarget = cancel.cancelTarget;
      assoc.lastEventCode = EVENT_GETTING_INFO;
      idle = 0;
      const std::string after = "  state " + std::to_string(state) + " idle 1 last ";
      std::string expected = lines({"log 0 libTembraAssoc:Didn't get packet for 180 secs"}) + cancel.sent;
      expected += "event 2 source 0\n";
      if (cancel.cancelTarget == cancel_both) expected += after + "5 cancel 3 radio 0 cmdtype \n";
      expected += "timeout 180\n" + after + "0 cancel 0 radio 0 cmdtype \n";
      EXPECT_EQ(wait(180), expected);
    }
  }
}

TEST_F(TimeOut, KeepsTheStateSoThatALateAnswerGoesOnWithoutATimeOut) {
  addJoined(5);
  wait(60);
  EXPECT_EQ(router.state(), "state 4 idle 1 last 0 cancel 0 radio 2 cmdtype AddingSensor");
  EXPECT_EQ(answer(Node(5)), lines({
                                 "log 0 libTembraAssoc:Received Packet from Z-wave",
                                 "log 0 ................. ZW_ASSOC ...................",
                                 "event 5 source 2",
                                 "  state 5 idle 1 last 5 cancel 0 radio 2 cmdtype GettingInfo",
                                 "log 0 libTembraAssoc:Getting sensor info (Z-wave)",
                                 "log 0 libTembraAssoc:ZW_ASSOC_QUERY:timeout set to 180 secs",
                                 "timeout 180",
                             }));
  EXPECT_EQ(wait(180), idleTimeout(180));
  answer(kSwitch);
  EXPECT_EQ(router.state(), "state 0 idle 1 last 6 cancel 0 radio 2 cmdtype SelectDeviceType");
  EXPECT_EQ(wait(180), idleTimeout(180));
}

TEST_F(TimeOut, BeginsAnewWithEveryDatagram) {
  addJoined(5);
  for (const char* sender : {"127.0.0.1", "127.255.255.1", "127.255.255.253"}) {
    EXPECT_EQ(wait(59), "");
    router.from(sender, 7000).send(kit::Bytes(1));
  }
  EXPECT_EQ(wait(59), "");
  EXPECT_NE(wait(1).find("event 2 source 2\n"), std::string::npos);
}

TEST_F(TimeOut, OfANewOperationIsTheRestOfTheWaitThatRuns) {
  wait(170);
  add();
  EXPECT_EQ(wait(9), "");
  EXPECT_NE(wait(1).find("event 2 source 0\n"), std::string::npos);
}

TEST_F(TimeOut, AnyFailureToReceiveIsOne) {
  for (const int error : {EAGAIN, EINTR, ECONNREFUSED, ENOMEM}) {
    add();
    story.skip();
    router.interruptReceive(error);
    EXPECT_NE(story.take().find("event 2 source 0\n"), std::string::npos) << error;
    EXPECT_EQ(assoc.assocState, ASSOC);
    EXPECT_EQ(assoc.cancelTarget, 0);
    EXPECT_EQ(idle, 1);
  }
}
