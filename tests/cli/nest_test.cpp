// The Nest account: linked, unlinked, and whether it is.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "support/database.h"
#include "support/sim_router.h"
#include "support/terminal.h"
#include "support/udp_listener.h"

namespace tembra::test {
namespace {

TEST(Nest, AccountIsLinkedAndUnlinked) {
  SimRouter router;
  const std::string code(247, 'c');
  const Ended linked = runAssoc({"nest", "link", code});
  EXPECT_EQ(linked.status, 0) << linked.errors;
  EXPECT_EQ(linked.output, "NEST_41 from Nest\nLinked the Nest account.\n");
  EXPECT_EQ(readFile("/tmp/Authcode"), code);
  EXPECT_EQ(runAssoc({"nest", "status"}).output, "A Nest account is linked.\n");
  const Ended unlinked = runAssoc({"nest", "unlink", "--yes", "--json"});
  EXPECT_EQ(unlinked.status, 0) << unlinked.errors;
  EXPECT_EQ(unlinked.output, "{\"event\":\"NEST_43\",\"code\":43,\"source\":\"Nest\"}\n");
  EXPECT_EQ(runAssoc({"nest", "status"}).output, "No Nest account is linked.\n");
  router.stop();
}

TEST(Nest, StatusNeedsNoServer) {
  const Ended before = runAssoc({"nest", "status", "--json"});
  EXPECT_EQ(before.status, 0) << before.errors;
  EXPECT_EQ(before.output, "{\"linked\":false}\n");
  writeFile("/tmp/Authcode", "");
  EXPECT_EQ(runAssoc({"nest", "status", "--json"}).output, "{\"linked\":true}\n");
}

TEST(Nest, APipeInTheCodesPlaceHoldsNobody) {
  ASSERT_EQ(mkfifo("/tmp/Authcode", 0666), 0);
  EXPECT_EQ(runAssoc({"nest", "status"}).status, 0);
}

TEST(Nest, FailsWithoutItsServer) {
  const Ended ended = runAssoc({"nest", "link", "code"});
  EXPECT_EQ(ended.status, 3);
  EXPECT_EQ(ended.sentence(), "tembra-assoc: no connection: the Nest server (127.255.255.251:8888) is not running.");
}

TEST(Nest, FailsWhenAnotherFrontEndHasTheConnection) {
  const UdpListener server("127.255.255.251", 8888);
  const UdpListener otherFrontEnd("127.255.255.4", 8888);
  EXPECT_EQ(runAssoc({"nest", "unlink", "--yes"}).status, 3);
  EXPECT_EQ(server.take(), std::nullopt);
}

TEST(TerminalNest, AsksBeforeItUnlinks) {
  SimRouter router({"--fault", "nest:late=300"});
  Terminal refused(assocCommand({"nest", "unlink"}));
  refused.waitFor("The Nest account is no longer linked, and its devices leave the home. Go on? [y/N] ");
  refused.type("\r");
  EXPECT_EQ(refused.end(), 1);
  Terminal agreed(assocCommand({"nest", "unlink"}));
  agreed.waitFor("Go on? [y/N] ");
  agreed.type("y\r");
  agreed.waitFor("Unlinking the Nest account (at most 180 s left)");
  agreed.waitFor("Unlinked the Nest account.");
  EXPECT_EQ(agreed.end(), 0);
  router.stop();
}

}  // namespace
}  // namespace tembra::test
