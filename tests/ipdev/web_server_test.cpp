// The web server's connection ends with the first answer of the Hue or the Nest server; any other stays open.
#include <gtest/gtest.h>

#include <string>
#include <thread>

#include "kit/router.h"
#include "wire.h"

using kit::Bytes;
using kit::lines;
using kit::Peer;
using kit::Router;

namespace {

constexpr const char* kClosing = "log 0 libTembraAssoc:closing the Assoc Connection";
constexpr const char* kExited = "log 0 libTembraAssoc:exited receive thread\\n";

struct Answer {
  const char* name;
  Peer& (Router::*from)();
  Bytes datagram;
  std::string line;   // of the trace
  std::string state;  // when the connection is closed
};

// What an answer of each kind does to a connection that waits in vain for something else.
const Answer kAnswers[] = {
    {"hue list", &Router::hue, hueAnswer(0), "event 21 source 3\n", "idle 0 last 21 cmdtype AddIPDevice"},
    {"hue result", &Router::hue, hueAnswer(4), "event 26 source 3\n", "idle 1 last 0 cmdtype Before"},
    {"hue unknown", &Router::hue, hueAnswer(7), "log 2 libTembraAssoc:Got unknown state from HUE\n",
     "idle 0 last 7 cmdtype Before"},
    {"nest result", &Router::nest, nestAnswer(121), "event 41 source 4\n", "idle 1 last 0 cmdtype Before"},
    {"nest unknown", &Router::nest, nestAnswer(101), "log 2 libTembraAssoc:Got unknown command from NEST\n",
     "idle 1 last 7 cmdtype Before"},
    {"nest silent", &Router::nest, nestAnswer(124, 1), "", "idle 1 last 7 cmdtype Before"},
};

void pretendAnAdd(TembraAssociation& assoc) {
  assoc.lastEventCode = 7;
  idle = 0;
  std::snprintf(cmdtype, sizeof cmdtype, "Before");
}

std::string shortState() {
  return "idle " + std::to_string(idle) + " last " + std::to_string(TembraAssociation::singleton->lastEventCode) +
         " cmdtype " + cmdtype;
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
  for (const Answer& answer : kAnswers) {
    SCOPED_TRACE(answer.name);
    TembraAssociation& assoc = router.connect(&TembraAssociation::webServerAssocInit);
    pretendAnAdd(assoc);
    const ClosingState closing(router);
    (router.*answer.from)().send(answer.datagram);
    EXPECT_EQ(router.takeTrace(), answer.line + lines({kClosing, "shutdown 2", "close", kExited}));
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
    for (const Answer& answer : kAnswers) {
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
