// At a terminal: what is shown while waiting, what is asked, and what an answer does.
#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>

#include "support/files.h"
#include "support/sim_router.h"
#include "support/terminal.h"

namespace tembra::test {
namespace {

TEST(TerminalAdd, ShowsWhatHappensAndTheSecondsLeft) {
  SimRouter router;
  Terminal terminal(assocCommand({"add"}));
  terminal.waitFor("Press the button of the device to add (at most 180 s left)");
  terminal.waitFor("(at most 179 s left)");
  router.pressOnAdd("siren");
  terminal.waitFor("A device answers on Z-Wave.");
  terminal.waitFor("Reading the device's description.");
  terminal.waitFor("Found a device on Z-Wave: Siren.");
  terminal.waitFor("Name: Enter for Siren #1");
  terminal.waitFor("Name (180 s): ");
  terminal.waitFor("Name (179 s): ");
  terminal.type("\r");
  terminal.waitFor("Place (");
  terminal.type("\r");
  terminal.waitFor("Added Siren #1 (Siren, Default).");
  EXPECT_EQ(terminal.end(), 0);
  router.stop();
}

// A line that is as wide as the terminal wraps in some of them.
TEST(TerminalAdd, ShowsTheSecondsLeftInOneLineOfANarrowTerminal) {
  SimRouter router;
  Terminal terminal(assocCommand({"add"}), Clock::kReal, 40);
  terminal.waitFor("Press the button of the device... 180 s");
  terminal.waitFor("\r\033[JPress the button of the device... 179 s");
  terminal.type("\x03");
  EXPECT_EQ(terminal.end(), 130);
  router.stop();
}

// The lines of a screen between the sequences that steer it.
std::vector<std::string> linesOn(const std::string& screen) {
  std::vector<std::string> lines(1);
  for (std::size_t i = 0; i < screen.size(); ++i) {
    if (screen[i] == '\r' || screen[i] == '\n') {
      lines.emplace_back();
    } else if (screen.compare(i, 3, "\033[J") == 0) {
      i += 2;
    } else {
      lines.back() += screen[i];
    }
  }
  return lines;
}

void expectNarrow(const std::string& screen, std::size_t columns) {
  for (const std::string& line : linesOn(screen)) {
    const bool isOneWord = line.find(' ', std::min(line.find_first_not_of(' '), line.size())) == std::string::npos;
    EXPECT_TRUE(line.size() < columns || isOneWord) << line;
  }
}

TEST(NarrowTerminal, BreaksSentencesAtBlanks) {
  Terminal wide(assocCommand({"remove"}), Clock::kReal, 40);
  wide.waitFor("Remove the next device whose button is\r\npressed from the home and the device\r\nlist?\r\n");
  wide.type("n\r");
  wide.waitFor("tembra-assoc: not confirmed, nothing\r\nwas done.");
  EXPECT_EQ(wide.end(), 1);
  for (const std::vector<std::string>& command :
       {std::vector<std::string>{"remove", "--yes"}, {"status"}, {"devices"}, {"cancel"}, {"add", "--help"}}) {
    Terminal narrow(assocCommand(command), Clock::kReal, 20);
    static_cast<void>(narrow.end());
    expectNarrow(narrow.screen(), 20);
  }
}

TEST(NarrowTerminal, BreaksTheLinesOfTheSimulatorToo) {
  for (const std::vector<std::string>& command : {std::vector<std::string>{"run", "--help"}, {"devices"}, {"paint"}}) {
    std::vector<std::string> words = {TEMBRA_SIM_PROGRAM};
    words.insert(words.end(), command.begin(), command.end());
    Terminal narrow(words, Clock::kReal, 40);
    static_cast<void>(narrow.end());
    expectNarrow(narrow.screen(), 40);
  }
  Terminal router({TEMBRA_SIM_PROGRAM, "run", "--timeline"}, Clock::kReal, 40);
  router.waitFor("tembra-sim: ready\r\n");
  EXPECT_EQ(Program({TEMBRA_SIM_PROGRAM, "press", "siren"}).end().status, 1);
  router.waitFor("siren -> Z-Wave server\r\n");
  router.waitFor("button pressed\r\n");
  EXPECT_EQ(Program({TEMBRA_SIM_PROGRAM, "stop"}).end().status, 0);
  EXPECT_EQ(router.end(), 0);
}

TEST(NarrowTerminal, PutsWhatAnOptionMeansBelowIt) {
  Terminal terminal(assocCommand({"add", "--help"}), Clock::kReal, 40);
  terminal.waitFor("  --place TEXT\r\n    where the device is, instead of\r\n    \"Default\"\r\n");
  EXPECT_EQ(terminal.end(), 0);
}

TEST(NarrowTerminal, CutsTheNamesOfAListOfDevices) {
  Database().put(Device(2, "A lamp whose name is longer than any table").type("Siren").zwave(5));
  Terminal terminal(assocCommand({"devices"}), Clock::kReal, 50);
  terminal.waitFor(
      "Id  Name           Type   Radio   Address  Values\r\n2   A lamp whos..  Siren  Z-Wave  5        0\r\n");
  EXPECT_EQ(terminal.end(), 0);
}

TEST(NarrowTerminal, FitsTheCountdownAlsoWhenItBecomesNarrowMeanwhile) {
  SimRouter router;
  Terminal terminal(assocCommand({"add"}));
  terminal.waitFor("Press the button of the device to add (at most 180 s left)");
  terminal.resize(40);
  terminal.waitFor("\r\033[JPress the button of the device... 1");
  terminal.resize(20);
  terminal.waitFor("\r\033[JPress the... 1");
  terminal.type("\x03");
  EXPECT_EQ(terminal.end(), 130);
  router.stop();
}

TEST(NarrowTerminal, KeepsTheWordOfAQuestionBesideALongAnswer) {
  SimRouter router;
  Terminal terminal(assocCommand({"add"}), Clock::kReal, 20);
  router.pressOnAdd("siren");
  terminal.waitFor("Name (180 s): ");
  terminal.type("The siren under the roof");
  terminal.waitFor("\r\033[JName: nder the roof");
  terminal.type("\r");
  terminal.waitFor("Place (");
  terminal.type("\r");
  terminal.waitFor("Added The siren\r\nunder the roof");
  EXPECT_EQ(terminal.end(), 0);
  router.stop();
}

TEST(TerminalAdd, AsksForTheTypeUntilItGetsOne) {
  SimRouter router;
  Terminal terminal(assocCommand({"add"}));
  router.pressOnAdd("multilevel-sensor");
  terminal.waitFor("What is the device?");
  terminal.waitFor("  1  MultilevelSensor (proposed)");
  terminal.waitFor("Number or name");
  terminal.type("99\r");
  terminal.waitFor("Please answer with 1 to ");
  terminal.waitFor("What is the device?");
  terminal.waitFor("  1  MultilevelSensor (proposed)");
  terminal.type("LuminanceSensor\r");
  terminal.waitFor("Name: Enter for LuminanceSensor #1\r\n");
  terminal.waitFor("Name (");
  terminal.type("Light at the dooor\x7f\x7fr\r");
  terminal.waitFor("Place: Enter for Default");
  terminal.waitFor("Place (");
  terminal.type("Porch\r");
  terminal.waitFor("Added Light at the door (LuminanceSensor, Porch).");
  EXPECT_EQ(terminal.end(), 0);
  router.waitFor("library -> HA server   node 2 is added: Light at the door, Porch");
  router.stop();
}

TEST(TerminalAdd, TakesNoKeysForAnAnswerThatWereTypedBeforeTheQuestion) {
  SimRouter router;
  Terminal terminal(assocCommand({"add"}));
  terminal.waitFor("Press the button");
  terminal.type("\r\r\r");
  router.pressOnAdd("metering-plug");
  terminal.waitFor("Number or name");
  terminal.type("2\r");
  terminal.waitFor("Name (");
  terminal.type("Washer\r");
  terminal.waitFor("Place (");
  terminal.type("Bath\r");
  terminal.waitFor("Added Washer (MultiSwitch, Bath).");
  EXPECT_EQ(terminal.end(), 0);
  router.stop();
}

TEST(TerminalAdd, TakesTheNumberOfAType) {
  SimRouter router;
  Terminal terminal(assocCommand({"add", "--name", "Washer", "--place", "Bath"}));
  router.pressOnAdd("metering-plug");
  terminal.waitFor("Number or name");
  terminal.type("2\r");
  terminal.waitFor("Added Washer (MultiSwitch, Bath).");
  EXPECT_EQ(terminal.end(), 0);
  router.stop();
}

TEST(TerminalAdd, TakesTheNameByEnterThatItShows) {
  SimRouter router;
  Terminal terminal(assocCommand({"add", "--place", "Bath"}));
  router.pressOnAdd("metering-plug");
  terminal.waitFor("Number or name");
  terminal.type("2\r");
  terminal.waitFor("Name: Enter for MultiSwitch #1");
  terminal.waitFor("Name (");
  terminal.type("\r");
  terminal.waitFor("Added MultiSwitch #1 (MultiSwitch, Bath).");
  EXPECT_EQ(terminal.end(), 0);
  const std::size_t added = terminal.screen().find("Added MultiSwitch");
  EXPECT_EQ(terminal.screen().find("Storing the device", added), std::string::npos) << terminal.screen();
  router.stop();
}

TEST(TerminalAdd, TakesTheProposedTypeByEnter) {
  SimRouter router;
  Terminal terminal(assocCommand({"add", "--name", "Socket", "--place", "Bath"}));
  router.pressOnAdd("outlet");
  terminal.waitFor("  1  OutletSwitch (proposed)");
  terminal.waitFor("Number or name");
  terminal.type("\r");
  terminal.waitFor("Added Socket (OutletSwitch, Bath).");
  EXPECT_EQ(terminal.end(), 0);
  router.stop();
}

TEST(TerminalAdd, AsksAgainForANameThatIsNone) {
  SimRouter router;
  Terminal terminal(assocCommand({"add", "--place", "Bath"}));
  router.pressOnAdd("zb-dimmer");
  terminal.waitFor("Name (");
  terminal.type(std::string(32, 'n') + "\r");
  terminal.waitFor("The text has 32 bytes, and there is room for 31.");
  terminal.type(
      "\x15"
      "Dim\r");
  terminal.waitFor("Added Dim (");
  EXPECT_EQ(terminal.end(), 0);
  router.stop();
}

TEST(TerminalAdd, AsksForANameInsteadOfOneThatDoesNotFitTheDevice) {
  SimRouter router;
  Terminal terminal(assocCommand({"add", "--place", "Bath", "--name", std::string(32, 'n')}));
  terminal.waitFor("the name has 32 bytes, and a ZigBee device has room for 31.");
  router.pressOnAdd("zb-dimmer");
  terminal.waitFor("the name has 32 bytes, and there is room for 31.");
  terminal.waitFor("Name (");
  terminal.type("Dim\r");
  terminal.waitFor("Added Dim (");
  EXPECT_EQ(terminal.end(), 0);
  router.stop();
}

TEST(TerminalAdd, AsksForATypeInsteadOfOneThatTheDeviceCannotBe) {
  SimRouter router;
  Terminal terminal(assocCommand({"add", "--place", "Bath", "--name", "Loud", "--type", "DoorLock"}));
  router.pressOnAdd("siren");
  terminal.waitFor("the device cannot be a DoorLock; possible: Siren.");
  terminal.waitFor("  1  Siren (proposed)");
  terminal.waitFor("Number or name");
  terminal.type("\r");
  terminal.waitFor("Added Loud (Siren, Bath).");
  EXPECT_EQ(terminal.end(), 0);
  router.stop();
}

TEST(TerminalAdd, AsksNothingWithYes) {
  SimRouter router;
  Terminal terminal(assocCommand({"add", "--yes"}));
  router.pressOnAdd("metering-plug");
  terminal.waitFor("Added MeterSwitch #1 (MeterSwitch, Default).");
  EXPECT_EQ(terminal.end(), 0);
  router.stop();
}

TEST(TerminalAdd, EndsAQuestionWhenTimeIsOver) {
  SimRouter router;
  Terminal terminal(assocCommand({"add"}), Clock::kFast);
  router.pressOnAdd("metering-plug");
  terminal.waitFor("Number or name");
  terminal.waitFor("Type and name of the device MeterSwitch #1 were not chosen in");
  EXPECT_EQ(terminal.end(), 1);
  router.stop();
}

TEST(TerminalAdd, EndsTheNamingWhenTimeIsOver) {
  SimRouter router;
  Terminal terminal(assocCommand({"add"}), Clock::kFast);
  router.pressOnAdd("siren");
  terminal.waitFor("Name (");
  terminal.waitFor("Type and name of the device Siren #1 were not chosen in time.");
  EXPECT_EQ(terminal.end(), 1);
  router.stop();
}

struct Leaving {
  const char* name;
  const char* at;    ///< what is on the screen
  const char* keys;  ///< what the user does about it
  int status;
};

void PrintTo(const Leaving& row, std::ostream* out) { *out << row.name; }

const Leaving kLeavings[] = {
    {"CtrlCWhileWaiting", "Press the button", "\x03", 130},
    {"CtrlCAtTheChoice", "Number or name", "\x03", 130},
    {"EndOfInputAtTheChoice", "Number or name", "\x04", 1},
    {"EndOfInputAtTheName", "Name (", "\x04", 1},
    {"EndOfInputAtThePlace", "Place (", "\x04", 1},
    {"CtrlCAtTheName", "Name (", "\x03", 130},
    {"CtrlCAtThePlace", "Place (", "\x03", 130},
};

class TerminalLeaving : public testing::TestWithParam<Leaving> {};

// Types through the questions that come before the one in question.
void goTo(Terminal& terminal, SimRouter& router, const std::string& place) {
  if (place == "Press the button") return terminal.waitFor(place);
  router.pressOnAdd("metering-plug");
  for (const char* question : {"Number or name", "Name (", "Place ("}) {
    terminal.waitFor(question);
    if (place == question) return;
    terminal.type("1\r");
  }
}

TEST_P(TerminalLeaving, CancelsOnBothRadios) {
  SimRouter router;
  Terminal terminal(assocCommand({"add"}));
  goTo(terminal, router, GetParam().at);
  terminal.type(GetParam().keys);
  EXPECT_EQ(terminal.end(), GetParam().status) << terminal.screen();
  router.waitForBothRadiosToHear("cancel");
  router.stop();
}

INSTANTIATE_TEST_SUITE_P(Add, TerminalLeaving, testing::ValuesIn(kLeavings),
                         [](const auto& test) { return test.param.name; });

TEST(TerminalRemove, AsksFirst) {
  SimRouter router;
  ASSERT_EQ(router.add("siren", {}).status, 0);
  Terminal terminal(assocCommand({"remove"}));
  terminal.waitFor("Yes or no [y/N]");
  terminal.type("y\r");
  router.pressOnRemove("siren");
  terminal.waitFor("Removed Siren #1 (id 1).");
  EXPECT_EQ(terminal.end(), 0);
  router.stop();
}

struct Answer {
  const char* name;
  const char* keys;
  int status;
};

void PrintTo(const Answer& row, std::ostream* out) { *out << row.name; }

const Answer kAnswers[] = {
    {"No", "n\r", 1},
    {"Nothing", "\r", 1},
    {"EndOfInput", "\x04", 1},
    {"CtrlC", "\x03", 130},
};

class TerminalReset : public testing::TestWithParam<Answer> {};

TEST_P(TerminalReset, DoesNothingUnlessConfirmed) {
  SimRouter router;
  Terminal terminal(assocCommand({"reset", "all"}));
  terminal.waitFor("Reset both radio networks and empty the device list? The device list is");
  terminal.type(GetParam().keys);
  EXPECT_EQ(terminal.end(), GetParam().status);
  const Told told = router.stop();
  EXPECT_EQ(told.zigbee.size() + told.zwave.size(), 0U);
}

INSTANTIATE_TEST_SUITE_P(Answers, TerminalReset, testing::ValuesIn(kAnswers),
                         [](const auto& test) { return test.param.name; });

TEST(TerminalResetProgress, ShowsTheSecondsLeft) {
  SimRouter router;
  Terminal terminal(assocCommand({"reset", "zwave"}), Clock::kFast);
  terminal.waitFor("Yes or no [y/N]");
  terminal.type("y\r");
  terminal.waitFor("Resetting (at most ");
  terminal.waitFor("Reset the Z-Wave network. No radio confirms a reset.");
  EXPECT_EQ(terminal.end(), 0);
  router.stop();
}

}  // namespace
}  // namespace tembra::test
