// The endpoint table.
#include <arpa/inet.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <string>

#include "kit/datagram_text.h"
#include "kit/router_test.h"

using kit::lines;
using kit::Router;

namespace {

using EndpointsTest = kit::RouterTest;

struct Endpoint {
  char** text;
  sockaddr_in* address;  // null: the object's own
  int* length;
  const char* expectedText;
  const char* complaint;
};

const Endpoint kEndpoints[] = {
    {&assoc_adr, nullptr, &len_assoc, "127.255.255.4:8888", "Bad Association client address"},
    {&ha_assoc_adr, &adr_ha_assoc, &len_ha_assoc, "127.255.255.1:9999", "Bad Haserver association Client address"},
    {&haserver_adr, &adr_haserver, &len_haserver, "127.255.255.1:8888", "Bad HA server address"},
    {&ozw_adr, &adr_ozw, &len_ozw, "127.255.255.254:8888", "Bad OZW Server address"},
    {&zigbee_adr, &adr_zigbee, &len_zigbee, "127.255.255.253:8888", "Bad Zigbee Server address"},
    {&hue_server_adr, &adr_hueserver, &len_hueserver, "127.255.255.252:8888", "Bad Hue Server address"},
    {&nest_server_adr, &adr_nest, &len_nest, "127.255.255.251:8888", "Bad Nest Server address"},
    {&web_adr, &adr_web, &len_web, "127.255.255.11:8888", "Bad web Client address"},
};

std::string resolved(const Endpoint& endpoint, const TembraAssociation& assoc) {
  const sockaddr_in* address = endpoint.address == nullptr ? &assoc.localAddr : endpoint.address;
  return kit::addressText(reinterpret_cast<const sockaddr*>(address));
}

char badHost[] = "256.1.1.1:8888";
char badPort[] = "127.0.0.1:99999";
char elsewhere[] = "127.0.0.77:7777";

// The error text in front of the complaint is that of a look-up which sets no errno.
std::string complaint(const Endpoint& endpoint) {
  return std::string("stderr Success: libTembraAssoc:") + endpoint.complaint;
}

TembraAssociation& createWithClearErrno(Router& router) {
  errno = 0;
  return router.assoc();
}

}  // namespace

TEST_F(EndpointsTest, AllEightAreResolvedAtCreation) {
  for (const Endpoint& endpoint : kEndpoints) {
    EXPECT_STREQ(*endpoint.text, endpoint.expectedText);
    EXPECT_EQ(*endpoint.length, 0);
  }
  const TembraAssociation& assoc = router.assoc();
  for (const Endpoint& endpoint : kEndpoints) {
    EXPECT_STREQ(*endpoint.text, endpoint.expectedText) << "the text stays whole";
    EXPECT_EQ(resolved(endpoint, assoc), endpoint.expectedText);
    EXPECT_EQ(*endpoint.length, 16);
  }
  EXPECT_EQ(router.takeTrace(), "");
}

TEST_F(EndpointsTest, BadHostsAreReportedInTheOrderOfTheTable) {
  std::string expected;
  for (const Endpoint& endpoint : kEndpoints) {
    *endpoint.text = badHost;
    expected += complaint(endpoint) + "\n";
  }
  const TembraAssociation& assoc = createWithClearErrno(router);
  EXPECT_EQ(router.takeTrace(), expected);
  for (const Endpoint& endpoint : kEndpoints) {
    EXPECT_EQ(resolved(endpoint, assoc), "255.255.255.255:0");
    EXPECT_EQ(*endpoint.length, 16);
  }
}

TEST_F(EndpointsTest, OneBadHostLeavesTheOthersResolved) {
  for (const Endpoint& bad : kEndpoints) {
    char* before = *bad.text;
    *bad.text = badHost;
    TembraAssociation& assoc = router.assoc();
    router.forget();
    errno = 0;
    EXPECT_EQ(assoc.ConnectToServers(), 0);
    EXPECT_EQ(router.takeTrace(), complaint(bad) + "\n");
    for (const Endpoint& other : kEndpoints) {
      EXPECT_EQ(resolved(other, assoc), &other == &bad ? "255.255.255.255:0" : other.expectedText) << bad.complaint;
    }
    *bad.text = before;
  }
}

TEST_F(EndpointsTest, ABadPortIsNotReported) {
  for (const Endpoint& endpoint : kEndpoints) *endpoint.text = badPort;
  TembraAssociation& assoc = router.assoc();
  EXPECT_EQ(router.takeTrace(), "");
  for (const Endpoint& endpoint : kEndpoints) EXPECT_EQ(resolved(endpoint, assoc), "127.0.0.1:0");
  EXPECT_EQ(assoc.ConnectToServers(), 0);
}

TEST_F(EndpointsTest, AChangeBeforeCreationCounts) {
  zigbee_adr = elsewhere;
  router.connect().cmdToZigbee(zigbee_cmd_add);
  EXPECT_EQ(router.takeTrace(), lines({"send 127.0.0.77:7777 320"}));
}

TEST_F(EndpointsTest, AChangeAfterCreationDoesNot) {
  TembraAssociation& assoc = router.connect();
  zigbee_adr = elsewhere;
  assoc.cmdToZigbee(zigbee_cmd_cancel);
  EXPECT_EQ(router.takeTrace(), lines({R"(send zigbee 320 "network pjoin 0" @180 "cancel")"}));
}

TEST_F(EndpointsTest, SendingToABadAddressIsTriedAndFails) {
  zigbee_adr = badHost;
  TembraAssociation& assoc = router.connect();
  ZigbeeCommand command{};
  EXPECT_EQ(assoc.sendToServers(SERVER_ZIGBEE, &command), -1);
  const std::string trace = router.takeTrace();
  EXPECT_EQ(trace.rfind("send 255.255.255.255:0 320 -> ", 0), 0U) << trace;
  EXPECT_NE(trace.find("\nstderr sendto error: "), std::string::npos) << trace;
}
