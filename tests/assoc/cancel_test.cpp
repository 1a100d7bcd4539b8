// Cancelling an operation on one radio or both.
#include <gtest/gtest.h>

#include "kit/router_test.h"

using kit::lines;
using kit::Node;

namespace {

using CancelTest = kit::ConnectedTest;

constexpr const char* kZigbeeLine = "log 0 libTembraAssoc:Sending cancel command to zigbee_server";
constexpr const char* kZigbeeSend = R"(send zigbee 320 "network pjoin 0" @180 "cancel")";
constexpr const char* kZwaveLine = "log 0 libTembraAssoc:Sending cancel command to zwave_server";
constexpr const char* kZwaveSend = "send zwave 236 op 4 cmd 0";

}  // namespace

TEST_F(CancelTest, EachKindSendsAndOnlyBothMakesIdle) {
  const struct {
    int type;
    std::string trace;
    const char* state;
  } kRows[] = {
      {1, lines({kZigbeeLine, kZigbeeSend}), "state 4 idle 0 last 3 cancel 2 radio 2 cmdtype AddingSensor"},
      {2, lines({kZwaveLine, kZwaveSend}), "state 4 idle 0 last 3 cancel 2 radio 2 cmdtype AddingSensor"},
      {3, lines({kZigbeeLine, kZigbeeSend, kZwaveLine, kZwaveSend}),
       "state 4 idle 1 last 3 cancel 2 radio 2 cmdtype AddingSensor"},
  };
  for (const auto& row : kRows) {
    assoc.addDevZigbeeZwave();
    router.zwave().send(Node(5));
    router.forget();
    assoc.sendCancelTo(static_cast<cancel_type>(row.type));
    EXPECT_EQ(router.takeTrace(), row.trace) << row.type;
    EXPECT_EQ(router.state(), row.state) << row.type;
  }
}

TEST_F(CancelTest, BothIsIdleOnlyAfterTheLastSend) {
  assoc.addDevZigbeeZwave();
  router.forget();
  assoc.sendCancelTo(cancel_both);
  for (const auto& datagram : router.takeSends()) {
    EXPECT_EQ(datagram.state, "state 1 idle 0 last 0 cancel 3 radio 0 cmdtype AddDevice") << datagram.destination;
  }
}

TEST_F(CancelTest, UnknownKindsSayOnlyThat) {
  assoc.addDevZigbeeZwave();
  const std::string state = router.state();
  router.forget();
  for (const int type : {0, 4, -1, 1000}) {
    assoc.sendCancelTo(static_cast<cancel_type>(type));
    EXPECT_EQ(router.takeTrace(), lines({"log 2 libTembraAssoc:Unknown cancel type"})) << type;
    EXPECT_EQ(router.state(), state) << type;
  }
}

TEST_F(CancelTest, ALateAnswerIsStillHandled) {
  assoc.addDevZigbeeZwave();
  assoc.sendCancelTo(cancel_both);
  router.zwave().send(Node(5));
  EXPECT_EQ(router.takeEvents().size(), 1U);
  EXPECT_EQ(assoc.assocState, ZW_ASSOC);
}
