// The doctor of a router that is well, and what the doctor says to whom.
#include <gtest/gtest.h>

#include <tembra/watch.h>

#include <filesystem>
#include <sstream>

#include "doctor/broken_router.h"
#include "support/files.h"
#include "support/terminal.h"

namespace tembra::test {
namespace {

void storeDevices() {
  Database()
      .nextId("9")
      .put("Version", "3")
      .put(Device(2, "Siren").type("Siren").zwave(5))
      .put(Device(3, "Button").type("KeyFob").zigbee(0xABC))
      .put(Device(8, "Lamp").type("HueLamp").ip())
      .index(8, 1, "02a1b2fffe0c0001")
      .index(8, 9, "user");
}

TEST(Doctor, FindsNothingOnARouterThatIsWell) {
  SimRouter router;
  storeDevices();
  const std::string before = readFile(kDatabase);
  const Ended doctor = Program(assocCommand({"doctor"}), wellSettings()).end();
  EXPECT_EQ(doctor.status, 0) << doctor.output;
  EXPECT_NE(doctor.output.find(" checks found nothing wrong. --verbose lists them.\n"), std::string::npos)
      << doctor.output;
  EXPECT_EQ(doctor.errors, "");
  EXPECT_EQ(readFile(kDatabase), before);
}

TEST(Doctor, ListsWhatIsWellWhenAskedTo) {
  SimRouter router;
  storeDevices();
  const Ended doctor = Program(assocCommand({"doctor", "--verbose"}), wellSettings()).end();
  EXPECT_EQ(doctor.status, 0) << doctor.output;
  EXPECT_NE(doctor.output.find("server-zwave: The Z-Wave server runs: tembra-sim (process "), std::string::npos)
      << doctor.output;
  EXPECT_NE(doctor.output.find("database-damage: The device database is whole: 7 records, 3 devices.\n"),
            std::string::npos)
      << doctor.output;
}

TEST(Doctor, TellsWhatItIsToldToLeaveOut) {
  const Ended doctor = runAssoc({"doctor", "--skip", "server-hue", "--skip", "server-nest", "--json"});
  for (const nlohmann::json& check : checksOf(doctor)) {
    EXPECT_NE(check.at("id"), "server-hue");
    EXPECT_NE(check.at("id"), "server-nest");
  }
  const Ended refused = runAssoc({"doctor", "--skip", "weather"});
  EXPECT_EQ(refused.status, 2);
  EXPECT_NE(refused.errors.find("there is no check weather"), std::string::npos) << refused.errors;
}

TEST(Doctor, SaysWhoHasTheConnectionWhileADeviceIsAdded) {
  SimRouter router;
  storeDevices();
  Program add(assocCommand({"add"}));
  router.waitForBothRadiosToHear("add a device");
  const Ended doctor = Program(assocCommand({"doctor"}), wellSettings()).end();
  EXPECT_EQ(doctor.status, 0) << doctor.output;
  EXPECT_NE(doctor.output.find("connection: tembra-assoc (process "), std::string::npos) << doctor.output;
  EXPECT_NE(doctor.output.find(": add, button.\n"), std::string::npos) << doctor.output;
  add.signal(SIGINT);
  EXPECT_EQ(add.end().status, 130);
}

// A front end that keeps the connection remembers what it did before.
TEST(Doctor, TellsTheLastFailureOfTheFrontEndThatHasTheConnection) {
  SimRouter router;
  storeDevices();
  const std::vector<std::string> kiosk = {
      TEMBRA_HOLDER_PROGRAM, "/tmp/front-ends/socket", "kiosk", "--keep-open", "add", "remove"};
  Program holder(kiosk);
  router.pressOnAdd("--fail");
  holder.waitForAll({R"("event":"ended")", R"("operation":"remove")"});
  const Ended doctor = Program(assocCommand({"doctor"}), wellSettings()).end();
  EXPECT_EQ(doctor.status, 0) << doctor.output;
  EXPECT_NE(doctor.output.find("last-failure: The last add that failed ended at "), std::string::npos) << doctor.output;
  EXPECT_NE(doctor.output.find("The Z-Wave radio gave up."), std::string::npos) << doctor.output;
}

TEST(Doctor, FindsALeapOfTheClockInTheFlightRecorder) {
  SimRouter router;
  storeDevices();
  std::filesystem::create_directory("/tmp/front-ends");
  writeFile("/tmp/front-ends/socket" TEMBRA_FAILURE_SUFFIX,
            R"({"schema":1,"entry":1,"monotonic_us":1000000,"wall_us":1790000000000000,"call":"add"})"
            "\n"
            R"({"schema":1,"entry":2,"monotonic_us":2000000,"wall_us":1790003601000000,"call":"cancel"})"
            "\n");
  const Ended doctor = Program(assocCommand({"doctor"}), wellSettings()).end();
  EXPECT_EQ(doctor.status, 1);
  EXPECT_NE(doctor.output.find("it leapt by 3600 s."), std::string::npos) << doctor.output;
}

TEST(Doctor, TellsTheLastFailureOfAFrontEndThatEnded) {
  SimRouter router;
  storeDevices();
  Program add(assocCommand({"add"}));
  router.pressOnAdd("--fail");
  EXPECT_EQ(add.end().status, 1);
  const Ended doctor = Program(assocCommand({"doctor"}), wellSettings()).end();
  EXPECT_NE(doctor.output.find("The Z-Wave radio gave up."), std::string::npos) << doctor.output;
}

TEST(Doctor, BreaksNoLineOfANarrowTerminal) {
  Terminal terminal(assocCommand({"doctor", "--skip", "platform"}), Clock::kReal, 40);
  terminal.waitFor("found something");
  EXPECT_EQ(terminal.end(), 1);
  std::istringstream lines(terminal.screen());
  for (std::string line; std::getline(lines, line);) EXPECT_LE(line.size(), 41U) << line;
}

TEST(Doctor, ListsItsChecksInLinesOfANarrowTerminal) {
  Terminal terminal(assocCommand({"doctor", "--help"}), Clock::kReal, 40);
  EXPECT_EQ(terminal.end(), 0);
  EXPECT_NE(terminal.screen().find("1 something was"), std::string::npos) << terminal.screen();
  std::istringstream lines(terminal.screen());
  for (std::string line; std::getline(lines, line);) EXPECT_LE(line.size(), 41U) << line;
}

// Pages and programs refer to the ids.
TEST(Doctor, HasAPageWithEachCheck) {
  const std::string page = readFile(TEMBRA_DOCS "/doctor.md");
  std::vector<std::string> arguments = {"doctor", "--json", "--program", "/bin/true"};
  for (const nlohmann::json& check : checksOf(runAssoc(arguments))) {
    const std::string row =
        "| `" + check.at("id").get<std::string>() + "` | " + check.at("question").get<std::string>();
    EXPECT_NE(page.find(row), std::string::npos) << row;
  }
}

}  // namespace
}  // namespace tembra::test
