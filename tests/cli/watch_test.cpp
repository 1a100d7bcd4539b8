// A second process says who has the connection, watches and cancels.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <csignal>
#include <filesystem>
#include <memory>
#include <nlohmann/json.hpp>

#include "kit/text.h"
#include "support/files.h"
#include "support/sim_router.h"

namespace tembra::test {
namespace {

TEST(Watch, EndsByCtrlC) {
  Program watch(assocCommand({"watch"}));
  watch.waitFor("Watching /tmp/front-ends/socket until Ctrl-C.");
  watch.signal(SIGINT);
  EXPECT_EQ(watch.end().status, 0);
}

TEST(Watch, ShowsWhatAnotherFrontEndDoes) {
  SimRouter router;
  Program watch(assocCommand({"watch"}));
  watch.waitFor("Watching");
  Program add(assocCommand({"add", "--yes"}));
  watch.waitFor("tembra-assoc has the connection: add. Press the button of the device to add.");
  router.pressOnAdd("siren");
  EXPECT_EQ(add.end().status, 0);
  watch.waitFor("add: A device answers on Z-Wave.");
  watch.waitFor("add: Reading the device's description.");
  watch.waitFor("add: Found a device on Z-Wave: Siren.");
  watch.waitFor("add: Added Siren #1 (Siren, Default).");
  watch.waitFor("add: Done.");
  watch.waitFor("The connection is free.");
  watch.signal(SIGTERM);
  EXPECT_EQ(watch.end().status, 0);
  router.stop();
}

TEST(Watch, EndsWhereItIsRefused) {
  SimRouter router;
  Program add(assocCommand({"add", "--yes"}));
  router.waitFor("library -> Z-Wave server   add a device");
  std::vector<std::unique_ptr<Program>> others;
  for (int i = 0; i < 16; ++i) {
    others.push_back(std::make_unique<Program>(assocCommand({"watch"})));
    others.back()->waitFor("has the connection: add");
  }
  const Ended refused = runAssoc({"watch"});
  EXPECT_EQ(refused.status, 1);
  EXPECT_EQ(refused.sentence(), "tembra-assoc: /tmp/front-ends/socket refuses to be watched: too many watchers.");
}

TEST(Status, TellsWhoHasTheConnection) {
  SimRouter router;
  EXPECT_EQ(runAssoc({"status"}).output, "No front end that can be watched has the connection.\n");
  EXPECT_EQ(runAssoc({"status", "--json"}).output, R"({"schema":1,"event":"status","holder":null})"
                                                   "\n");
  Program add(assocCommand({"add", "--yes"}));
  router.waitFor("library -> Z-Wave server   add a device");
  const Ended status = runAssoc({"status"});
  EXPECT_EQ(status.status, 0) << status.errors;
  EXPECT_NE(status.output.find("tembra-assoc (process "), std::string::npos) << status.output;
  EXPECT_NE(status.output.find(": add. Press the button of the device to add."), std::string::npos) << status.output;
  add.signal(SIGINT);
  EXPECT_EQ(add.end().status, 130);
  router.stop();
}

TEST(History, TellsWhatTheHolderDid) {
  SimRouter router;
  Program add(assocCommand({"add", "--yes"}));
  add.waitFor("Press the button of the device to add.");
  const Ended people = runAssoc({"status", "--history"});
  EXPECT_EQ(people.status, 0) << people.errors;
  EXPECT_NE(people.output.find("  called add\n"), std::string::npos) << people.output;
  EXPECT_NE(people.output.find("  log, progress: libTembraAssoc:"), std::string::npos) << people.output;
  EXPECT_NE(people.output.find("  add: Press the button of the device to add.\n"), std::string::npos) << people.output;
  const std::vector<std::string> lines = kit::linesOf(runAssoc({"status", "--history", "--json"}).output);
  ASSERT_FALSE(lines.empty());
  EXPECT_EQ(nlohmann::json::parse(lines.front()).at("call"), "add");
  EXPECT_EQ(nlohmann::json::parse(lines.back()).at("event").at("event"), "waiting");
  add.signal(SIGINT);
  EXPECT_EQ(add.end().status, 130);
  router.stop();
}

TEST(History, TellsWhatLedToTheLastFailure) {
  SimRouter router;
  EXPECT_EQ(runAssoc({"status", "--history"}).output,
            "Nobody has the connection, and no failure was kept beside /tmp/front-ends/socket.\n");
  EXPECT_EQ(runAssoc({"hue", "remove", "--yes", "02:a1:b2:0c:00:0f"}).status, 1);
  EXPECT_EQ(router.add("siren", {"--yes"}).status, 0);  // no failure
  const Ended failure = runAssoc({"status", "--history"});
  EXPECT_EQ(failure.output.find("Nobody has the connection. This is what led to the last failure:\n"), 0U);
  EXPECT_NE(failure.output.find("  called hue-remove 02:a1:b2:0c:00:0f\n"), std::string::npos) << failure.output;
  EXPECT_NE(failure.output.find("  hue-remove: "), std::string::npos) << failure.output;
  router.stop();
}

/// Beside the watch socket, as a front end that failed leaves it.
void leaveFailure(const std::string& content) {
  std::filesystem::create_directory("/tmp/front-ends");
  writeFile("/tmp/front-ends/socket.failure", content);
}

TEST(History, TellsCallsInWords) {
  leaveFailure(R"({"entry":1,"call":"reset","arguments":["4"]})"
               "\n"
               R"({"entry":2,"call":"finish","arguments":["42","Loud"]})"
               "\n"
               R"({"entry":3,"call":"finish","arguments":["0"]})"
               "\n");
  const std::string told = runAssoc({"status", "--history"}).output;
  for (const char* call : {"reset all", "finish Siren Loud", "finish the proposed type"}) {
    EXPECT_NE(told.find(std::string("  called ") + call + "\n"), std::string::npos) << told;
  }
}

// A pipe has no end, and a large file would fill the memory.
TEST(History, RefusesWhatNoFlightRecorderLeaves) {
  leaveFailure(std::string(70000, 'x'));
  const std::string refusal = "tembra-assoc: /tmp/front-ends/socket.failure is no flight recorder.";
  EXPECT_EQ(runAssoc({"status", "--history"}).sentence(), refusal);
  std::filesystem::remove("/tmp/front-ends/socket.failure");
  ASSERT_EQ(mkfifo("/tmp/front-ends/socket.failure", 0600), 0);
  EXPECT_EQ(runAssoc({"status", "--history"}).sentence(), refusal);
}

TEST(WatchPath, IsAbsolute) {
  for (const std::string& path : {std::string(), std::string("relative"), "/" + std::string(107, 'x')}) {
    const Ended status = runAssoc({"status", "--watch-path", path});
    EXPECT_EQ(status.status, 2) << path;
    EXPECT_NE(status.sentence().find("is no absolute path"), std::string::npos) << status.errors;
  }
}

TEST(Cancel, EndsWhatAnotherFrontEndDoes) {
  SimRouter router;
  Program add(assocCommand({"add", "--yes"}));
  router.waitFor("library -> Z-Wave server   add a device");
  const Ended cancelled = runAssoc({"cancel"});
  EXPECT_EQ(cancelled.status, 0) << cancelled.errors;
  EXPECT_EQ(cancelled.output, "Cancelled the add of tembra-assoc.\n");
  EXPECT_EQ(add.end().status, 1);
  router.waitForBothRadiosToHear("cancel");
  router.stop();
}

TEST(Cancel, TellsProgramsWhatAnotherFrontEndDid) {
  SimRouter router;
  Program add(assocCommand({"add", "--yes"}));
  router.waitFor("library -> Z-Wave server   add a device");
  const std::vector<std::string> lines = kit::linesOf(runAssoc({"cancel", "--json"}).output);
  ASSERT_EQ(lines.size(), 2U);
  const auto status = nlohmann::json::parse(lines[0]);
  EXPECT_EQ(status.at("event"), "status");
  EXPECT_EQ(status.at("holder").at("operation"), "add");
  const auto ended = nlohmann::json::parse(lines[1]);
  EXPECT_EQ(ended.at("event"), "ended");
  EXPECT_EQ(ended.at("outcome"), "cancelled");
  EXPECT_EQ(add.end().status, 1);
  router.stop();
}

TEST(Cancel, SaysWhatADeviceThatHadJoinedNeeds) {
  SimRouter router({"--fault", "info:late=60000"});
  Program add(assocCommand({"add", "--yes"}));
  router.pressOnAdd("siren");
  add.waitFor("Reading the device's description.");
  EXPECT_EQ(runAssoc({"cancel"}).output,
            "Cancelled the add of tembra-assoc. Remove the device, or it stays in the radio network unseen.\n");
  EXPECT_EQ(add.end().status, 1);
  router.stop();
}

// A path that nobody asked for may be closed to the user; of another one the user wants to know.
TEST(WatchPath, ThatCannotBeServedIsToldWhereItWasGiven) {
  SimRouter router;
  const Ended told = router.add("siren", {"--watch-path", "/proc/nowhere/socket"});
  EXPECT_NE(told.errors.find("Other front ends cannot watch or cancel what this one does"), std::string::npos)
      << told.errors;
  router.stop();
}

}  // namespace
}  // namespace tembra::test
