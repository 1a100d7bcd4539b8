// Watching ends when it is told to, and not before.
#include <gtest/gtest.h>

#include <csignal>

#include "support/sim_router.h"
#include "support/udp_listener.h"

namespace tembra::test {
namespace {

TEST(Watch, EndsByCtrlCAndCancelsNothing) {
  const ZigbeeListener zigbee;
  const UdpListener zwave("127.255.255.254", 8888);
  Program watch(assocCommand({"watch"}));
  watch.waitFor("Watching 127.255.255.4:8888 until Ctrl-C.");
  watch.signal(SIGINT);
  EXPECT_EQ(watch.end().status, 130);
  EXPECT_EQ(zigbee.takeCommand(), "");
  EXPECT_EQ(zwave.take(), std::nullopt);
}

TEST(Watch, HoldsTheConnection) {
  SimRouter router;
  Program watch(assocCommand({"watch", "--role", "cloud"}));
  watch.waitFor("Watching");
  EXPECT_EQ(runAssoc({"add"}).status, 3);
  watch.signal(SIGTERM);
  EXPECT_EQ(watch.end().status, 130);
  router.stop();
}

}  // namespace
}  // namespace tembra::test
