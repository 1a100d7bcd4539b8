// Whose a datagram is, and what then happens before the server's own flow, or instead of it.
#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>

#include "kit/router_test.h"

using kit::Bytes;
using kit::lines;
using kit::Node;
using kit::Router;

namespace {

using ReceiveLoop = kit::RouterTest;

constexpr int kMeshId = 3;  // what the router's command answers

const std::string kFromZwave = lines({"log 0 libTembraAssoc:Received Packet from Z-wave"});
const std::string kFromHa = lines({"log 1 libTembraAssoc:\\n*** Got data from HA_Server. Not implemented ***\\n"});
const std::string kFromStranger = lines({"log 2 libTembraAssoc:received command from unknown server\\n"});

// Only the address counts, and only whether its text stands in a known server's "address:port".
const struct Sender {
  const char* address;
  int port;  // 0: any
  bool meshIdIsTaken;
  std::string trace;  // of an idle service; "flow" where the flow's own tests tell
} kSenders[] = {
    {"127.255.255.254", 8888, true, kFromZwave},
    {"127.255.255.254", 1, true, kFromZwave},
    {"127.255.255.25", 0, true, kFromZwave},
    {"127.255.255.2", 0, true, kFromZwave},
    {"127.255.255.253", 8888, true, ""},
    {"127.255.255.253", 9999, true, ""},
    {"127.255.255.252", 0, true, "flow"},
    {"127.255.255.251", 0, true, "flow"},
    {"127.255.255.1", 9999, false, kFromHa},
    {"127.255.255.1", 8888, false, kFromHa},
    {"127.255.255.1", 0, false, kFromHa},
    {"127.255.255.11", 8888, false, kFromStranger},
    {"127.255.255.250", 8888, false, kFromStranger},
    {"127.255.255.24", 0, false, kFromStranger},
    {"127.255.255.3", 0, false, kFromStranger},
    {"127.255.255.4", 0, false, kFromStranger},
    {"127.0.0.1", 8888, false, kFromStranger},
    {"127.255.254.254", 8888, false, kFromStranger},
};

class Dispatch : public testing::Test {
 protected:
  Router router;
  TembraAssociation& assoc = router.connect();

  // The standard peers hold their addresses and ports already.
  void sendFrom(const Sender& sender, const Bytes& datagram) {
    const std::string who = std::string(sender.address) + ":" + std::to_string(sender.port);
    if (who == "127.255.255.254:8888") return router.zwave().send(datagram);
    if (who == "127.255.255.253:8888") return router.zigbee().send(datagram);
    if (who == "127.255.255.1:9999") return router.ha().send(datagram);
    router.from(sender.address, sender.port).send(datagram);
  }
};

}  // namespace

TEST_F(Dispatch, EverySenderIsKnownByItsAddress) {
  int rows = 0;
  for (const Sender& sender : kSenders) {
    ++rows;
    assoc_meshID = -1;
    router.forget();
    sendFrom(sender, Bytes(2000, 0x7F));
    EXPECT_EQ(assoc_meshID, sender.meshIdIsTaken ? kMeshId : -1) << sender.address;
    const std::string trace = router.takeTrace();
    if (sender.trace == "flow") {
      EXPECT_EQ(trace.find("unknown server"), std::string::npos) << trace;
    } else {
      EXPECT_EQ(trace, sender.trace) << sender.address;
    }
  }
  EXPECT_EQ(rows, 18);
}

TEST_F(Dispatch, TheHaServerAndStrangersChangeNothing) {
  for (const char* sender : {"127.255.255.1", "127.0.0.1"}) {
    for (const int state : {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, -1}) {
      assoc.assocState = state;
      idle = 0;
      const std::string before = router.state();
      const ZwNodeInfo received = assoc.zwNodeRx;
      router.from(sender).send(Node(5));
      EXPECT_EQ(router.state(), before);
      EXPECT_EQ(std::memcmp(&assoc.zwNodeRx, &received, sizeof received), 0);
    }
  }
  EXPECT_TRUE(router.takeEvents().empty());
  EXPECT_TRUE(router.takeSends().empty());
}

TEST_F(Dispatch, TheMeshIdIsTakenBeforeTheFlowRuns) {
  int inCallback = -1;
  router.onEvent([&](AssocEvent*) { inCallback = assoc_meshID; });
  EXPECT_EQ(assoc_meshID, -1);
  assoc.assocState = ASSOC;
  router.zwave().send(Node(5));
  EXPECT_EQ(inCallback, kMeshId);
}

TEST_F(Dispatch, TheMeshIdIsTheLocalOneOfNow) {
  local_meshID = 41;
  router.zwave().send(Node(5));
  EXPECT_EQ(assoc_meshID, 41);
}

TEST_F(ReceiveLoop, BeginsAndEndsInThisOrder) {
  router.assoc().cancelTarget = cancel_both;
  router.watch(kit::kWatchTimeouts);
  router.open();
  EXPECT_EQ(router.takeTrace(), lines({"log 0 libTembraAssoc:entered receive thread",
                                       "log 0 libTembraAssoc:Thread created successfully", "timeout 180"}));
  EXPECT_EQ(router.state(), "state 0 idle 1 last 0 cancel 0 radio 0 cmdtype ");
  router.close();
  EXPECT_EQ(router.takeTrace(), lines({"log 0 libTembraAssoc:closing the Assoc Connection",
                                       "log 0 libTembraAssoc:exited receive thread\\n"}));
}

TEST_F(ReceiveLoop, DoesNotReceiveWhenItIsClosed) {
  router.assoc();
  router.watch(kit::kWatchTimeouts);
  idle = 0;
  EXPECT_EQ(TembraAssociation::receiverHelper(&router.assoc()), nullptr);
  EXPECT_EQ(router.takeTrace(),
            lines({"log 0 libTembraAssoc:entered receive thread", "log 0 libTembraAssoc:exited receive thread\\n"}));
  EXPECT_EQ(idle, 1);
}

// The datagram before is still in the buffer, and its sender is still known: neither counts once more.
TEST_F(ReceiveLoop, ClosingDuringAnAddTellsNothing) {
  TembraAssociation& assoc = router.connect();
  assoc.addDevZigbeeZwave();
  router.zwave().send(Node(5));
  router.forget();
  router.close();
  EXPECT_EQ(router.takeTrace(), lines({"log 0 libTembraAssoc:closing the Assoc Connection",
                                       "log 0 libTembraAssoc:exited receive thread\\n"}));
}

// `running` is looked at before the first receive and after each pass: what was received in between still counts.
TEST_F(ReceiveLoop, HandlesWhatItReceivesAfterRunningBecameZero) {
  TembraAssociation& assoc = router.connect();
  assoc.addDevZigbeeZwave();
  router.forget();
  assoc.running = 0;
  router.zwave().send(Node(5));
  EXPECT_EQ(router.state(), "state 4 idle 0 last 3 cancel 2 radio 2 cmdtype AddingSensor");
  EXPECT_EQ(router.takeEvents().size(), 1U);
  const std::string trace = router.takeTrace();
  EXPECT_NE(trace.find("timeout set to 60 sec...\nlog 0 libTembraAssoc:exited receive thread"), std::string::npos)
      << trace;
}

TEST_F(ReceiveLoop, TimesOutOnceMoreAfterRunningBecameZero) {
  TembraAssociation& assoc = router.connect();
  assoc.addDevZigbeeZwave();
  router.forget();
  assoc.running = 0;
  router.advance(180);
  EXPECT_EQ(router.state(), "state 1 idle 1 last 0 cancel 0 radio 0 cmdtype AddDevice");
  EXPECT_EQ(router.takeEvents().at(0).event.code, EVENT_TIMEOUT);
  const std::string trace = router.takeTrace();
  EXPECT_NE(trace.find("event 2 source 0\nlog 0 libTembraAssoc:exited receive thread"), std::string::npos) << trace;
  router.advance(1000);
  EXPECT_EQ(router.takeTrace(), "");
}

// Also behind a wait for the database, where a closed connection ends the flow.
TEST_F(ReceiveLoop, EndsTheFlowInWhichRunningBecameZero) {
  router.database().put(kit::Device(12, "Lamp").zwave(5));
  TembraAssociation& assoc = router.connect();
  assoc.removeDevZigbeeZwave();
  router.forget();
  router.onLog([&assoc](const std::string& line) {
    if (line == "libTembraAssoc:Removing Zwave device 5") assoc.running = 0;
  });
  router.zwave().send(Node(5));
  EXPECT_EQ(router.state(), "state 6 idle 0 last 0 cancel 2 radio 2 cmdtype RemoveDevice");
  EXPECT_EQ(router.takeEvents().at(0).event.code, EVENT_REMOVED);
}

TEST_F(ReceiveLoop, WorksOnItsOwnObjectWhateverItIsGiven) {
  router.fail(kit::Call::kCreateThread, EAGAIN);
  TembraAssociation& assoc = router.connect();
  router.forget();
  router.onLog([&assoc](const std::string& line) {
    if (line == "libTembraAssoc:entered receive thread") assoc.running = 0;
  });
  EXPECT_EQ(assoc.receiver(nullptr), nullptr);
  EXPECT_EQ(router.takeTrace(),
            lines({"log 0 libTembraAssoc:entered receive thread", "log 0 libTembraAssoc:exited receive thread\\n"}));
}

// A connection has one receive thread. Another one, which a slow start may bring, neither receives nor resets anything.
TEST_F(ReceiveLoop, EndsAtOnceWhenAnotherThreadServesTheConnection) {
  TembraAssociation& assoc = router.connect();
  assoc.addDevZigbeeZwave();
  const std::string state = router.state();
  router.forget();
  EXPECT_EQ(TembraAssociation::receiverHelper(&assoc), nullptr);
  EXPECT_EQ(router.takeTrace(),
            lines({"log 0 libTembraAssoc:entered receive thread", "log 0 libTembraAssoc:exited receive thread\\n"}));
  EXPECT_EQ(router.state(), state);
  router.zwave().send(Node(5));
  EXPECT_EQ(router.takeEvents().size(), 1U);
}
