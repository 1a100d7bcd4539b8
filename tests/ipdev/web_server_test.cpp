// The web server's connection ends with the first answer of the Hue or the Nest server; any other stays open.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <thread>

#include "kit/router.h"
#include "wire.h"

using kit::Bytes;
using kit::lines;
using kit::Node;
using kit::Peer;
using kit::Router;

namespace {

constexpr const char* kClosing = "log 0 libTembraAssoc:closing the Assoc Connection";
constexpr const char* kExited = "log 0 libTembraAssoc:exited receive thread\\n";

struct Answer {
  std::string name;
  Peer& (Router::*from)();
  Bytes datagram;
  std::string line;   // of the trace
  std::string state;  // when the connection is closed
};

std::string eventLine(int code, int source) {
  return "event " + std::to_string(code) + " source " + std::to_string(source);
}

// What each answer does to a connection that waits in vain for something else.
std::vector<Answer> everyAnswer() {
  const std::string done = "idle 1 last 0 cmdtype Before";
  std::vector<Answer> answers = {
      {"hue 0", &Router::hue, hueAnswer(0), eventLine(21, 3), "idle 0 last 21 cmdtype AddIPDevice"}};
  const int hueEvents[][2] = {{1, 30}, {2, 25}, {3, 27}, {4, 26}, {5, 28}, {6, 29}, {8, 22}, {9, 23}};
  for (const auto& [type, code] : hueEvents) {
    answers.push_back(
        {"hue " + std::to_string(type), &Router::hue, hueAnswer(type), eventLine(code, type == 1 ? 0 : 3), done});
  }
  for (const int type : {7, 10, -1}) {
    answers.push_back({"hue " + std::to_string(type), &Router::hue, hueAnswer(type),
                       "log 2 libTembraAssoc:Got unknown state from HUE", "idle 0 last 7 cmdtype Before"});
  }
  const int nestEvents[][3] = {{100, 0, 44}, {121, 0, 41}, {122, 0, 43}, {123, 0, 42}, {124, 0, 45}, {124, -1, 46}};
  for (const auto& [command, status, code] : nestEvents) {
    answers.push_back(
        {"nest " + std::to_string(command), &Router::nest, nestAnswer(command, status), eventLine(code, 4), done});
  }
  answers.push_back({"nest 101", &Router::nest, nestAnswer(101), "log 2 libTembraAssoc:Got unknown command from NEST",
                     "idle 1 last 7 cmdtype Before"});
  answers.push_back({"nest 124 silent", &Router::nest, nestAnswer(124, 1), "", "idle 1 last 7 cmdtype Before"});
  return answers;
}
constexpr std::size_t kAnswers = 20;

void pretendAnAdd(TembraAssociation& assoc) {
  assoc.lastEventCode = 7;
  idle = 0;
  std::snprintf(cmdtype, sizeof cmdtype, "Before");
}

std::string shortState() {
  return "idle " + std::to_string(idle) + " last " + std::to_string(TembraAssociation::singleton->lastEventCode) +
         " cmdtype " + cmdtype;
}

std::string joined(const std::string& first, const std::string& rest) {
  return first.empty() ? rest : first + '\n' + rest;
}

// The state when the closing is logged.
class ClosingState {
 public:
  explicit ClosingState(Router& router) : router_(router) {
    router.onLog([this](const std::string& text) {
      if (text.find("closing") == std::string::npos) return;
      state_ = shortState();
      thread_ = std::this_thread::get_id();
    });
  }
  ~ClosingState() { router_.onLog(nullptr); }
  ClosingState(const ClosingState&) = delete;
  ClosingState& operator=(const ClosingState&) = delete;

  [[nodiscard]] const std::string& state() const { return state_; }
  [[nodiscard]] std::thread::id thread() const { return thread_; }

 private:
  Router& router_;
  std::string state_;
  std::thread::id thread_;
};

}  // namespace

TEST(WebServerTest, EveryAnswerEndsTheConnection) {
  Router router;
  router.watch(kit::kWatchConnection);
  const auto answers = everyAnswer();
  EXPECT_EQ(answers.size(), kAnswers);
  for (const Answer& answer : answers) {
    SCOPED_TRACE(answer.name);
    TembraAssociation& assoc = router.connect(&TembraAssociation::webServerAssocInit);
    pretendAnAdd(assoc);
    const ClosingState closing(router);
    (router.*answer.from)().send(answer.datagram);
    EXPECT_EQ(router.takeTrace(), joined(answer.line, lines({kClosing, "shutdown 2", "close", kExited})));
    EXPECT_EQ(closing.state(), answer.state) << "everything else is done before";
    EXPECT_EQ(shortState(), answer.state);
    EXPECT_EQ(assoc.running, 0);
    EXPECT_EQ(assoc.sock, 0);
    EXPECT_EQ(assoc.closeMark, -1);
    EXPECT_EQ(assoc_meshID, -1);
  }
}

TEST(WebServerTest, NoOtherRolesConnectionEnds) {
  Router router;
  router.watch(kit::kWatchConnection);
  constexpr Router::Role roles[] = {&TembraAssociation::LCDAssocInit, &TembraAssociation::cloudappsAssocInit,
                                    &TembraAssociation::meshServerAssocInit, &TembraAssociation::FreeUsr1AssocInit,
                                    &TembraAssociation::FreeUsr2AssocInit};
  int roleNumber = 2;
  for (const auto role : roles) {
    TembraAssociation& assoc = router.connect(role);
    EXPECT_EQ(assoc.clientRole, roleNumber++);
    for (const Answer& answer : everyAnswer()) {
      SCOPED_TRACE(answer.name);
      pretendAnAdd(assoc);
      (router.*answer.from)().send(answer.datagram);
      EXPECT_EQ(router.takeEvents().size(), answer.line.find("event") == 0 ? 1U : 0U);
      EXPECT_EQ(router.takeTrace().find("clos"), std::string::npos);
      EXPECT_EQ(shortState(), answer.state);
      EXPECT_EQ(assoc.running, 1);
    }
    router.close();
  }
}

TEST(WebServerTest, TheReceiveThreadItselfCloses) {
  Router router;
  router.connect(&TembraAssociation::webServerAssocInit);
  const ClosingState closing(router);
  router.hue().send(hueAnswer(4));
  const auto events = router.takeEvents();
  ASSERT_EQ(events.size(), 1U);
  EXPECT_EQ(closing.thread(), events[0].thread);
  EXPECT_NE(closing.thread(), std::this_thread::get_id());
}

TEST(WebServerTest, TheRadiosAndStrangersDoNotEndIt) {
  Router router;
  TembraAssociation& assoc = router.connect(&TembraAssociation::webServerAssocInit);
  router.zwave().send(Node(5));
  router.zigbee().send(Bytes(444));
  router.ha().send(Bytes(12));
  router.from("127.0.0.9").send(hueAnswer(0));
  router.advance(180);
  EXPECT_EQ(assoc.running, 1);
  router.hue().send(hueAnswer(0));
  EXPECT_EQ(assoc.running, 0);
}

TEST(WebServerTest, ARoleTakenMeanwhileDecides) {
  Router router;
  TembraAssociation& assoc = router.connect(&TembraAssociation::webServerAssocInit);
  TembraAssociation::LCDAssocInit();
  router.nest().send(nestAnswer(121));
  EXPECT_EQ(assoc.running, 1);
  TembraAssociation::webServerAssocInit();
  EXPECT_EQ(assoc.running, 1);
  router.nest().send(nestAnswer(121));
  EXPECT_EQ(assoc.running, 0);
}

TEST(WebServerTest, ItEndsWithoutACallbackToo) {
  Router router;
  TembraAssociation& assoc = router.connect(&TembraAssociation::webServerAssocInit);
  assoc.registerAssocEventCB(nullptr);
  router.nest().send(nestAnswer(121));
  EXPECT_EQ(router.takeTrace(), lines({kClosing, kExited}));
  EXPECT_EQ(assoc.running, 0);
}

TEST(WebServerTest, AnAnswerThatWaitsBehindIsNotHandled) {
  Router router;
  router.connect(&TembraAssociation::webServerAssocInit);
  for (int i = 0; i < 5; ++i) router.hue().post(hueAnswer(8));
  router.settle();
  EXPECT_EQ(router.takeTrace(), lines({"event 22 source 3", kClosing, kExited}));
}

TEST(WebServerTest, ACallbackThatClosesHasItClosedAgain) {
  Router router;
  TembraAssociation& assoc = router.connect(&TembraAssociation::webServerAssocInit);
  router.watch(kit::kWatchConnection);
  pretendAnAdd(assoc);
  router.onEvent([&assoc](AssocEvent*) { assoc.closeAssocConnection(); });
  router.hue().send(hueAnswer(2));
  EXPECT_EQ(router.takeTrace(), lines({"event 25 source 3", kClosing, "shutdown 2", "close", kClosing, kExited}));
  EXPECT_EQ(shortState(), "idle 1 last 0 cmdtype Before");
}

TEST(WebServerTest, EachOperationOpensAConnectionOfItsOwn) {
  Router router;
  TembraAssociation& assoc = *TembraAssociation::webServerAssocInit();
  router.registerCallback();
  char mac[] = "a1:b2:c3:0a:1b:2c";
  for (int round = 0; round < 10; ++round) {
    ASSERT_EQ(router.open(), 0);
    assoc.Hue_addBridge(mac);
    router.hue().send(hueAnswer(round % 2 == 0 ? 4 : 2));
    ASSERT_EQ(assoc.running, 0);
    EXPECT_EQ(idle, 1);
    const auto events = router.takeEvents();
    ASSERT_EQ(events.size(), 1U) << "one receive thread";
    EXPECT_EQ(events[0].event.code, round % 2 == 0 ? 26 : 25);
  }
}

// The kernel's own shutdown wakes the thread, long before the time-out.
TEST(WebServerTest, OnTheRealKernelTheThreadEndsAtOnce) {
  Router router(kit::Clock::kReal);
  router.connect(&TembraAssociation::webServerAssocInit);
  router.hue().post(hueAnswer(8));
  std::string trace;
  for (int i = 0; i < 1000 && trace.find("exited") == std::string::npos; ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
    trace += router.takeTrace();
  }
  EXPECT_EQ(trace, lines({"event 22 source 3", kClosing, kExited}));
  ASSERT_EQ(router.open(), 0) << "the address is free again";
}
