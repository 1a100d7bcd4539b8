// Telling senders apart.
#include <arpa/inet.h>
#include <gtest/gtest.h>

#include "kit/router.h"

using kit::Router;

namespace {

ClientType clientAt(TembraAssociation& assoc, const char* dotted) {
  in_addr address{};
  inet_pton(AF_INET, dotted, &address);
  return assoc.findClientType(address);
}

char movedZwave[] = "127.0.0.77:8888";

}  // namespace

TEST(SenderTest, IsToldByItsAddress) {
  Router router;
  TembraAssociation& assoc = router.assoc();
  constexpr struct {
    const char* address;
    int type;
  } kRows[] = {
      {"127.255.255.254", 1},
      {"127.255.255.253", 2},
      {"127.255.255.1", 3},
      {"127.255.255.252", 4},
      {"127.255.255.251", 5},
      {"127.0.0.1", 0},
      {"127.255.255.4", 0},
      {"127.255.255.11", 0},
      {"127.255.255.3", 0},
      {"127.255.255.250", 0},
      {"127.255.255.255", 0},
      {"0.0.0.0", 0},
      {"255.255.255.255", 0},
      // A part of a known text is enough, and the first text that has it wins.
      {"127.255.255.25", 1},
      {"127.255.255.2", 1},
      {"27.255.255.254", 1},
      {"7.255.255.25", 1},
      {"27.255.255.253", 2},
      {"7.255.255.1", 3},
      {"7.255.255.252", 4},
      {"27.255.255.251", 5},
  };
  for (const auto& row : kRows) EXPECT_EQ(clientAt(assoc, row.address), row.type) << row.address;
  EXPECT_EQ(router.takeTrace(), "");
}

TEST(SenderTest, IsNotToldByTheEndpointTable) {
  Router router;
  ozw_adr = movedZwave;
  TembraAssociation& assoc = router.assoc();
  EXPECT_EQ(clientAt(assoc, "127.255.255.254"), CLIENT_ZWAVE);
  EXPECT_EQ(clientAt(assoc, "127.0.0.77"), CLIENT_UNKNOWN);
}
