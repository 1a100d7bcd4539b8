// The Nest account: linked, unlinked, and whether it is.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "support/files.h"
#include "support/sim_router.h"
#include "support/terminal.h"
#include "support/udp_listener.h"

namespace tembra::test {
namespace {

// `script` starts the command as "$@".
std::vector<std::string> linkBy(const std::string& script) {
  std::vector<std::string> command = {"/bin/sh", "-c", script, "sh"};
  for (const std::string& word : assocCommand({"nest", "link", "-"})) command.push_back(word);
  return command;
}

Ended linkFrom(const std::string& input) {
  writeFile("/tmp/input", input);
  return Program(linkBy("\"$@\" </tmp/input")).end();
}

TEST(Nest, AccountIsLinkedAndUnlinked) {
  SimRouter router;
  const std::string code(247, 'c');
  const Ended linked = runAssoc({"nest", "link", code});
  EXPECT_EQ(linked.status, 0) << linked.errors;
  EXPECT_EQ(linked.output, "Linking the Nest account.\nLinked the Nest account.\n");
  EXPECT_EQ(readFile("/tmp/Authcode"), code);
  EXPECT_EQ(runAssoc({"nest", "status"}).output, "A Nest account is linked.\n");
  const Ended unlinked = runAssoc({"nest", "unlink", "--yes", "--json"});
  EXPECT_EQ(unlinked.status, 0) << unlinked.errors;
  EXPECT_NE(unlinked.output.find(R"("event":"account")"), std::string::npos) << unlinked.output;
  EXPECT_NE(unlinked.output.find(R"("linked":false)"), std::string::npos) << unlinked.output;
  EXPECT_EQ(runAssoc({"nest", "status"}).output, "No Nest account is linked.\n");
  router.stop();
}

TEST(Nest, StatusNeedsNoServer) {
  const Ended before = runAssoc({"nest", "status", "--json"});
  EXPECT_EQ(before.status, 0) << before.errors;
  EXPECT_NE(before.output.find(R"("linked":false)"), std::string::npos) << before.output;
  writeFile("/tmp/Authcode", "");
  EXPECT_NE(runAssoc({"nest", "status", "--json"}).output.find(R"("linked":true)"), std::string::npos);
}

TEST(Nest, APipeInTheCodesPlaceHoldsNobody) {
  ASSERT_EQ(mkfifo("/tmp/Authcode", 0666), 0);
  EXPECT_EQ(runAssoc({"nest", "status"}).status, 0);
}

TEST(Nest, FailsWithoutItsServer) {
  const Ended ended = runAssoc({"nest", "link", "code"});
  EXPECT_EQ(ended.status, 3);
  EXPECT_NE(ended.sentence().find("The Nest server does not run on this router."), std::string::npos) << ended.errors;
}

TEST(Nest, FailsWhenAnotherFrontEndHasTheConnection) {
  const UdpListener server("127.255.255.251", 8888);
  const UdpListener otherFrontEnd("127.255.255.4", 8888);
  EXPECT_EQ(runAssoc({"nest", "unlink", "--yes"}).status, 3);
  EXPECT_EQ(server.take(), std::nullopt);
}

TEST(Nest, TheCodeComesFromStandardInput) {
  SimRouter router;
  const Ended linked = linkFrom("a code\nmore");
  EXPECT_EQ(linked.status, 0) << linked.errors;
  EXPECT_EQ(linked.errors, "");
  EXPECT_EQ(readFile("/tmp/Authcode"), "a code");
  router.stop();
}

TEST(Nest, BlanksAroundTheCodeAreNoPartOfIt) {
  SimRouter router;
  const std::string longest(247, 'c');
  const std::pair<std::string, std::string> rows[] = {{" \t a code\t \r\n", "a code"},
                                                      {" " + longest + "\r\n", longest}};
  for (const auto& [line, code] : rows) {
    EXPECT_EQ(linkFrom(line).status, 0);
    EXPECT_EQ(readFile("/tmp/Authcode"), code);
  }
  router.stop();
}

TEST(Nest, WithoutACodeThatFitsNothingIsSent) {
  const UdpListener server("127.255.255.251", 8888);
  const Ended none = runAssoc({"nest", "link", "-"});
  EXPECT_EQ(none.status, 2);
  EXPECT_EQ(none.sentence(), "tembra-assoc: no code was given.");
  for (const char* nothing : {"", "\n", " \t\r\n", "\ncode\n"}) {
    const Ended empty = linkFrom(nothing);
    EXPECT_EQ(empty.status, 2);
    EXPECT_EQ(empty.sentence(), "tembra-assoc: no code was given.");
  }
  const Ended tooLong = linkFrom(std::string(248, 'x'));
  EXPECT_EQ(tooLong.status, 2);
  EXPECT_EQ(tooLong.sentence(), "tembra-assoc: the code is longer than 247 bytes.");
  EXPECT_EQ(server.take(), std::nullopt);
}

TEST(Nest, ACodeOnTheCommandLineIsSeenByEverybody) {
  const Ended ended = runAssoc({"nest", "link", "code"});
  EXPECT_TRUE(
      ended.errors.starts_with("tembra-assoc: every user of this machine can see the code on the command line; "
                               "\"nest link -\" asks for it instead.\n"))
      << ended.errors;
}

TEST(TerminalNest, DoesNotShowTheCode) {
  SimRouter router;
  Terminal terminal(assocCommand({"nest", "link", "-"}));
  terminal.waitFor("The account's authorisation code (it is not shown)");
  terminal.type("SECRET123\r");
  terminal.waitFor("Linked the Nest account.");
  EXPECT_EQ(terminal.end(), 0);
  EXPECT_EQ(terminal.screen().find("SECRET"), std::string::npos) << terminal.screen();
  EXPECT_EQ(readFile("/tmp/Authcode"), "SECRET123");
  router.stop();
}

// A terminal without its echo is of no use to the next program.
TEST(TerminalNest, ShowsWhatIsTypedAgainAfterAnInterruption) {
  Terminal terminal(linkBy("trap : INT; \"$@\"; stty -a"));
  terminal.waitFor("(it is not shown)");
  terminal.type("\x03");
  terminal.waitFor(" echo ");
  EXPECT_EQ(terminal.end(), 0);
}

TEST(TerminalNest, AsksBeforeItUnlinks) {
  SimRouter router({"--fault", "nest:late=300"});
  Terminal refused(assocCommand({"nest", "unlink"}));
  refused.waitFor("Unlink the Nest account? Its devices leave the home.");
  refused.type("\r");
  EXPECT_EQ(refused.end(), 1);
  Terminal agreed(assocCommand({"nest", "unlink"}));
  agreed.waitFor("Yes or no [y/N]");
  agreed.type("y\r");
  agreed.waitFor("Unlinking the Nest account (at most ");
  agreed.waitFor("Unlinked the Nest account.");
  EXPECT_EQ(agreed.end(), 0);
  router.stop();
}

}  // namespace
}  // namespace tembra::test
