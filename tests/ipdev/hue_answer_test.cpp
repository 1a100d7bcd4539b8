// Answers of the Hue server that tell a result.
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

using HueAnswerTest = kit::ConnectedTest;

struct Result {
  int type;
  int event;
  int source;  // 0: kept as it was
  const char* before;
  const char* behind;  // the command type
};

const Result kResults[] = {
    {1, 30, 0, R"({"CommandType":")",
     R"(","MobileInternalIndex":"","Success":"false","Reason":"HueFailed","Type":"HueHub"})"},
    {2, 25, 3, R"({"CommandType":")",
     R"(","MobileInternalIndex":"","Success":"true","Type":"HueHub","Reason":"HueAdded"})"},
    {3, 27, 3, R"({"CommandType":")",
     R"(","MobileInternalIndex":"","Success":"false","Reason":"HueBridgeNotFound","Type":"HueHub"})"},
    {4, 26, 3, R"({"CommandType":")",
     R"(","MobileInternalIndex":"","Success":"false","Type":"HueHub","Reason":"HueButtonNotPressed"})"},
    {5, 28, 3, R"({"CommandType":")",
     R"(","MobileInternalIndex":"","Success":"false","Type":"HueHub","Reason":"BridgeNotFound"})"},
    {6, 29, 3, R"({"CommandType":")", R"(", "MobileInternalIndex":"","Success":"true","Type":"HueBulb"})"},
    {8, 22, 3, R"({"CommandType":")", R"(", "MobileInternalIndex":"","Success":"true","Type":"HueHub"})"},
    {9, 23, 3, R"({"CommandType":")", R"(", "MobileInternalIndex":"","Success":"true","Type":"HueHub"})"},
};
constexpr std::size_t kResultCount = 8;

std::string jsonOf(const Result& result, const std::string& commandType) {
  return result.before + commandType + result.behind + '\n';
}

// Every answer meets an operation that waits.
void pretendAnOperation(const std::string& commandType) {
  TembraAssociation& assoc = *TembraAssociation::singleton;
  assoc.lastEventCode = 21;
  assoc.activeRadio = 3;
  idle = 0;
  std::strncpy(cmdtype, commandType.c_str(), sizeof cmdtype);
}

// One answer, and all that may come of it.
void expectEvent(Router& router, const Result& result, int source) {
  pretendAnOperation("AddIPDevice");
  router.hue().send(hueAnswer(result.type));
  const std::string event = "event " + std::to_string(result.event) + " source " + std::to_string(source);
  EXPECT_EQ(router.takeTrace(), lines({event}));
  const auto events = router.takeEvents();
  ASSERT_EQ(events.size(), 1U);
  EXPECT_EQ(events[0].state, "state 0 idle 0 last 0 cancel 0 radio 3 cmdtype AddIPDevice") << "during the callback";
  EXPECT_EQ(router.state(), "state 0 idle 1 last 0 cancel 0 radio 3 cmdtype AddIPDevice") << "after it";
}

}  // namespace

TEST_F(HueAnswerTest, EachResultIsItsEvent) {
  int source = 0;
  for (const Result& result : kResults) {
    SCOPED_TRACE(result.type);
    if (result.source != 0) source = result.source;
    expectEvent(router, result, source);
  }
  EXPECT_EQ(std::size(kResults), kResultCount);
}

// From the first byte to the last, over all results one after the other: a text writes itself and its NUL, and what
// stood behind it stays.
TEST_F(HueAnswerTest, ThePayloadIsTheExactText) {
  Wire payload(4096);
  const std::string full(59, 'c');
  for (const std::string& commandType : {full, std::string("AddIPDevice"), std::string(), std::string("100%s%n")}) {
    for (const Result& result : kResults) {
      pretendAnOperation(commandType);
      router.hue().send(hueAnswer(result.type));
      payload.text(0, jsonOf(result, commandType) + '\0');
      EXPECT_EQ(payloadOf(router.takeEvents().at(0)), payload.all()) << result.type << " " << commandType;
    }
  }
}

TEST_F(HueAnswerTest, ACommandTypeWithoutItsNulEndsWithItsField) {
  for (const Result& result : kResults) {
    pretendAnOperation(std::string(60, 'c'));
    router.hue().send(hueAnswer(result.type));
    const std::string json = jsonOf(result, std::string(59, 'c'));
    EXPECT_STREQ(reinterpret_cast<const char*>(router.takeEvents().at(0).event.payload), json.c_str());
  }
}

TEST_F(HueAnswerTest, AnUnknownResultIsLoggedAndChangesNothing) {
  for (const int type : {7, 10, 11, 21, 25, 30, 100, 255, 256, 65536, INT_MAX, -1, -2, -256, INT_MIN}) {
    for (const int before : {0, 1}) {
      pretendAnOperation("AddIPDevice");
      idle = static_cast<unsigned char>(before);
      const std::string state = router.state();
      router.hue().send(hueAnswer(type));
      EXPECT_EQ(router.takeTrace(), lines({"log 2 libTembraAssoc:Got unknown state from HUE"})) << type;
      EXPECT_EQ(router.state(), state) << type;
    }
  }
}

TEST_F(HueAnswerTest, WithoutACallbackTheStateAdvancesAllTheSame) {
  assoc.registerAssocEventCB(nullptr);
  for (const Result& result : kResults) {
    pretendAnOperation("RemoveIPDevice");
    router.hue().send(hueAnswer(result.type));
    EXPECT_EQ(router.takeTrace(), "");
    EXPECT_EQ(router.state(), "state 0 idle 1 last 0 cancel 0 radio 3 cmdtype RemoveIPDevice") << result.type;
  }
}

TEST_F(HueAnswerTest, TheAssociationStateNeitherMattersNorChanges) {
  for (int state = -1; state <= 9; ++state) {
    for (const Result& result : kResults) {
      pretendAnOperation("AddDevice");
      assoc.assocState = state;
      assoc.cancelTarget = 3;
      router.hue().send(hueAnswer(result.type));
      EXPECT_EQ(router.takeEvents().at(0).event.code, result.event);
      EXPECT_EQ(router.state(), "state " + std::to_string(state) + " idle 1 last 0 cancel 3 radio 3 cmdtype AddDevice");
    }
  }
}

TEST_F(HueAnswerTest, AnUnaskedAnswerEndsTheWaitOfAnAdd) {
  assoc.addDevZigbeeZwave();
  router.zwave().send(kit::Node(5));
  EXPECT_EQ(router.state(), "state 4 idle 0 last 3 cancel 2 radio 2 cmdtype AddingSensor");
  router.forget();
  router.hue().send(hueAnswer(9));
  EXPECT_EQ(router.takeTrace(), lines({"event 23 source 3"}));
  EXPECT_EQ(router.state(), "state 4 idle 1 last 0 cancel 2 radio 2 cmdtype AddingSensor");
}

TEST_F(HueAnswerTest, EveryAnswerMakesTheAssociationThisRoutersOwn) {
  for (const int type : {0, 1, 7}) {
    assoc_meshID = -1;
    router.hue().send(hueAnswer(type));
    EXPECT_EQ(assoc_meshID, 3) << type;
  }
}

// The length of a datagram does not matter: what is missing stands in the buffer since the datagram before.
TEST_F(HueAnswerTest, AShortAnswerIsCompletedByTheOneBefore) {
  router.hue().send(Bytes{4, 0, 0, 0});
  EXPECT_EQ(router.takeTrace(), lines({"event 26 source 3"}));
  router.hue().send(Bytes{5});
  EXPECT_EQ(router.takeTrace(), lines({"event 28 source 3"}));
  router.hue().send(Bytes{});
  EXPECT_EQ(router.takeTrace(), lines({"event 28 source 3"})) << "an empty datagram is one, too";
  router.nest().send(nestAnswer(2));
  router.forget();
  router.hue().send(Bytes{});
  EXPECT_EQ(router.takeTrace(), lines({"event 25 source 3"})) << "the buffer is shared by all servers";
  router.hue().send(Bytes(4096, 6));
  EXPECT_EQ(router.takeTrace(), lines({"log 2 libTembraAssoc:Got unknown state from HUE"}));
}
