// States in which nothing is expected of the Z-Wave server, or only a closing answer.
#include <climits>
#include <cstring>

#include "stories.h"

using kit::lines;
using kit::Node;

namespace {

using ZwaveStates = Stories;

std::string stateLine(int state, int idleNow) {
  return "  state " + std::to_string(state) + " idle " + std::to_string(idleNow) +
         " last 3 cancel 3 radio 1 cmdtype Something";
}

}  // namespace

TEST_F(ZwaveStates, AResetThatAFrontEndAwaitsIsDone) {
  assoc.assocState = ASSOC_RESET;
  idle = 0;
  EXPECT_EQ(answer(Node(5)), lines({
                                 "log 0 libTembraAssoc:Received Packet from Z-wave",
                                 "log 0 libTembraAssoc:Reset Success",
                                 "  state 0 idle 0 last 0 cancel 0 radio 0 cmdtype ",
                                 "timeout 180",
                                 "  state 0 idle 1 last 0 cancel 0 radio 0 cmdtype ",
                             }));
}

TEST_F(ZwaveStates, AnAnswerThatNobodyExpectsOnlyEndsTheState) {
  assoc.lastEventCode = EVENT_ADDING;
  assoc.cancelTarget = cancel_both;
  assoc.activeRadio = SERVER_ZIGBEE;
  std::strcpy(cmdtype, "Something");
  for (const int state : {0, 7, 8, 9, 1000, INT_MAX, -1, INT_MIN}) {
    for (const Byte idleNow : {Byte{0}, Byte{1}}) {
      assoc.assocState = state;
      idle = idleNow;
      std::string expected = lines({"log 0 libTembraAssoc:Received Packet from Z-wave", "timeout 180"});
      if (state != 0) expected += lines({stateLine(0, idleNow)});
      EXPECT_EQ(answer(Node(5)), expected) << state;
    }
  }
}

TEST_F(ZwaveStates, EveryAnswerIsStoredAsReceived) {
  for (const int state : {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, -1}) {
    Node node(static_cast<unsigned char>(100 + state));
    std::memset(node.block().indexes, 100 + state, sizeof node.block().indexes);
    assoc.assocState = state;
    answer(node);
    EXPECT_EQ(std::memcmp(&assoc.zwNodeRx, node.bytes().data(), sizeof assoc.zwNodeRx), 0) << state;
  }
}

TEST_F(ZwaveStates, ACreatedZigbeeDeviceIsForgottenByTheNextZwaveAnswer) {
  assoc.assocState = ZB_ADDED;
  idle = 0;
  answer(Node(5));
  EXPECT_EQ(assoc.assocState, ASSOC_IDLE);
  EXPECT_EQ(idle, 0);
  EXPECT_TRUE(router.takeSends().empty());
  EXPECT_TRUE(router.takeEvents().empty());
}
