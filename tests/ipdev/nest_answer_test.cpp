// Answers of the Nest server.
#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <string>

#include "kit/router_test.h"
#include "wire.h"

using kit::Bytes;
using kit::lines;
using kit::Router;

namespace {

using NestAnswerTest = kit::RouterTest;

constexpr int kStatuses[] = {0, -1, 1, 2, -2, 124, INT_MAX, INT_MIN};

// What an answer leads to, as lines of the trace.
std::string consequence(int command, int status) {
  const auto event = [](int code) { return "event " + std::to_string(code) + " source 4\n"; };
  switch (command) {
    case 100:
      return event(44);
    case 121:
      return event(41);
    case 122:
      return event(43);
    case 123:
      return event(42);
    case 124:
      return status == 0 ? event(45) : status == -1 ? event(46) : "";
    default:
      return "log 2 libTembraAssoc:Got unknown command from NEST\n";
  }
}

void pretendAnOperation() {
  TembraAssociation& assoc = *TembraAssociation::singleton;
  assoc.lastEventCode = 7;
  assoc.activeRadio = 4;
  idle = 0;
  std::strcpy(cmdtype, "AddIPDevice");
}

struct Count {
  int events = 0;
  int unknown = 0;
  int silent = 0;
};

// One answer, and all that may come of it.
void expectConsequence(Router& router, int command, int status, Count& count) {
  SCOPED_TRACE("command " + std::to_string(command) + " status " + std::to_string(status));
  pretendAnOperation();
  router.nest().send(nestAnswer(command, status, 5));
  const std::string trace = router.takeTrace();
  EXPECT_EQ(trace, consequence(command, status));
  const auto events = router.takeEvents();
  for (const auto& recorded : events) {
    EXPECT_EQ(recorded.state, "state 0 idle 0 last 0 cancel 0 radio 4 cmdtype AddIPDevice") << "during the callback";
  }
  EXPECT_EQ(router.state(), events.empty() ? "state 0 idle 1 last 7 cancel 0 radio 4 cmdtype AddIPDevice"
                                           : "state 0 idle 1 last 0 cancel 0 radio 4 cmdtype AddIPDevice");
  ++(!events.empty() ? count.events : trace.empty() ? count.silent : count.unknown);
}

}  // namespace

TEST_F(NestAnswerTest, EveryCommandWithEveryStatus) {
  router.connect();
  Count count;
  for (int command = -2; command <= 130; ++command) {
    for (const int status : kStatuses) expectConsequence(router, command, status, count);
  }
  for (const int command : {256 + 100, 65536 + 121, INT_MAX, INT_MIN, -100}) {
    for (const int status : kStatuses) expectConsequence(router, command, status, count);
  }
  EXPECT_EQ(count.events, 4 * 8 + 2) << "100 and 121 to 123 with any status, 124 with two";
  EXPECT_EQ(count.silent, 6) << "124 with any other";
  EXPECT_EQ(count.unknown, (133 + 5 - 5) * 8);
}

TEST_F(NestAnswerTest, OneEventCarriesTheAnswer) {
  router.connect();
  const Bytes answer = nestAnswer(100, -7, 0x12345678);
  router.nest().send(answer);
  EXPECT_EQ(payloadOf(router.takeEvents().at(0)), payloadOf(answer));
}

TEST_F(NestAnswerTest, TheOtherEventsLeaveThePayloadAlone) {
  router.connect();
  const Bytes carried = nestAnswer(100, 1, 2);
  router.nest().send(carried);
  for (const int command : {121, 122, 123, 124}) router.nest().send(nestAnswer(command, 0, 77));
  router.nest().send(nestAnswer(124, -1, 78));
  const auto events = router.takeEvents();
  ASSERT_EQ(events.size(), 6U);
  for (const auto& recorded : events) EXPECT_EQ(payloadOf(recorded), payloadOf(carried)) << recorded.event.code;
}

TEST_F(NestAnswerTest, WithoutACallbackTheStateAdvancesAllTheSame) {
  router.connect().registerAssocEventCB(nullptr);
  for (const int command : {100, 121, 122, 123, 124}) {
    pretendAnOperation();
    router.nest().send(nestAnswer(command));
    EXPECT_EQ(router.state(), "state 0 idle 1 last 0 cancel 0 radio 4 cmdtype AddIPDevice") << command;
  }
  EXPECT_EQ(router.takeTrace(), "");
}

TEST_F(NestAnswerTest, TheAssociationStateNeitherMattersNorChanges) {
  TembraAssociation& assoc = router.connect();
  for (int state = -1; state <= 9; ++state) {
    pretendAnOperation();
    assoc.assocState = state;
    assoc.cancelTarget = 3;
    router.nest().send(nestAnswer(121));
    EXPECT_EQ(router.takeTrace(), lines({"event 41 source 4"}));
    EXPECT_EQ(router.state(), "state " + std::to_string(state) + " idle 1 last 0 cancel 3 radio 4 cmdtype AddIPDevice");
  }
}

TEST_F(NestAnswerTest, EveryAnswerMakesTheAssociationThisRoutersOwn) {
  router.connect();
  for (const int command : {100, 101, 124}) {
    assoc_meshID = -1;
    router.nest().send(nestAnswer(command, 9));
    EXPECT_EQ(assoc_meshID, 3) << command;
  }
}

TEST_F(NestAnswerTest, AShortAnswerIsCompletedByTheOneBefore) {
  router.connect();
  router.nest().send(nestAnswer(124, -1));
  router.nest().send(Bytes{124});
  router.nest().send(Bytes{});
  EXPECT_EQ(router.takeTrace(), lines({"event 46 source 4", "event 46 source 4", "event 46 source 4"}));
  router.nest().send(Bytes(4096, 0xFF));
  EXPECT_EQ(router.takeTrace(), lines({"log 2 libTembraAssoc:Got unknown command from NEST"}));
}
