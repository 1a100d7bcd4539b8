// Sending by destination.
#include <gtest/gtest.h>

#include <cerrno>
#include <numeric>

#include "kit/router_test.h"

using kit::Bytes;
using kit::Call;
using kit::lines;

namespace {

using TransportTest = kit::RouterTest;

Bytes numbered() {
  Bytes bytes(8192);
  std::iota(bytes.begin(), bytes.end(), static_cast<unsigned char>(1));
  return bytes;
}

}  // namespace

TEST_F(TransportTest, EachDaemonGetsItsLengthOfTheBuffer) {
  TembraAssociation& assoc = router.connect();
  const struct {
    ServerType type;
    const char* destination;
    std::size_t length;
    kit::Peer& peer;
  } kRows[] = {
      {SERVER_ZIGBEE, "zigbee", 320, router.zigbee()},
      {SERVER_ZWAVE, "zwave", 236, router.zwave()},
      {SERVER_HUE, "hue", 304, router.hue()},
      {SERVER_NEST, "nest", 256, router.nest()},
      {SERVER_HA, "ha", 4100, router.ha()},
  };
  for (const auto& row : kRows) {
    Bytes buffer = numbered();
    EXPECT_EQ(assoc.sendToServers(row.type, buffer.data()), 0);
    const auto sends = router.takeSends();
    ASSERT_EQ(sends.size(), 1U);
    EXPECT_EQ(sends[0].destination, row.destination);
    buffer.resize(row.length);
    EXPECT_EQ(sends[0].bytes, buffer);
    EXPECT_EQ(row.peer.receive(), buffer) << "it really arrives";
  }
}

TEST_F(TransportTest, NothingIsSentToTheMeshServer) {
  Bytes buffer = numbered();
  EXPECT_EQ(router.connect().sendToServers(SERVER_MESH, buffer.data()), 0);
  EXPECT_EQ(router.takeTrace(), lines({"log 1 send to mesh server Not Implemented"}));
}

TEST_F(TransportTest, UnknownDestinationsFail) {
  TembraAssociation& assoc = router.connect();
  Bytes buffer = numbered();
  for (const int type : {0, 7, 8, 1000, -1, -2147483647}) {
    EXPECT_EQ(assoc.sendToServers(static_cast<ServerType>(type), buffer.data()), -1) << type;
    EXPECT_EQ(router.takeTrace(), lines({"log 2 libTembraAssoc:Unknown server specified"})) << type;
  }
}

TEST_F(TransportTest, AFailureIsPrintedAndNotRetried) {
  TembraAssociation& assoc = router.connect();
  ZwaveCommand command{};
  router.fail(Call::kSendto, ENETUNREACH);
  EXPECT_EQ(assoc.sendToServers(SERVER_ZWAVE, &command), -1);
  EXPECT_EQ(router.takeTrace(), lines({
                                    "send zwave 236 op 0 cmd 0 -> ENETUNREACH",
                                    "stderr sendto error: Network is unreachable",
                                }));
}

TEST_F(TransportTest, AClosedConnectionIsTriedAllTheSame) {
  TembraAssociation& assoc = router.assoc();
  ZwaveCommand command{};
  EXPECT_EQ(assoc.sendToServers(SERVER_ZWAVE, &command), -1);
  EXPECT_EQ(router.takeTrace(), lines({
                                    "send zwave 236 op 0 cmd 0 -> ENOTSOCK",
                                    "stderr sendto error: Socket operation on non-socket",
                                }));
}

TEST_F(TransportTest, ADaemonThatIsNotThereIsNoFailure) {
  web_adr = zigbee_adr;
  zigbee_adr = const_cast<char*>("127.255.255.99:8888");
  TembraAssociation& assoc = router.connect();
  ZigbeeCommand command{};
  EXPECT_EQ(assoc.sendToServers(SERVER_ZIGBEE, &command), 0);
  EXPECT_EQ(assoc.sendToServers(SERVER_ZIGBEE, &command), 0);
}
