// Guides: for a device that is known already, for one that joined but was not kept, and for resets that lose devices.
#include <gtest/gtest.h>

#include "kit/text.h"
#include "support/files.h"
#include "support/sim_router.h"
#include "support/terminal.h"

namespace tembra::test {
namespace {

TEST(AddAgain, KeepsTheNameOfAKnownDevice) {
  SimRouter router;
  ASSERT_EQ(router.add("siren", {"--name", "Loud"}).status, 0);
  Program again(assocCommand({"add", "--again", "--place", "Hall"}));
  router.pressOnAdd("siren");
  again.waitFor("Press the button of the known device, so that it leaves.");
  router.pressOnRemove("siren");
  again.waitFor("Removed Loud (id 1).");
  again.waitFor("Press the button of the device to add.");
  router.pressOnAdd("siren");
  again.waitFor("Added Loud (Siren, Hall).");
  const Ended ended = again.end();
  EXPECT_EQ(ended.status, 0) << ended.errors;
  EXPECT_NE(ended.errors.find("The device is known already as Loud (number 1)."), std::string::npos) << ended.errors;
  const std::string list = runAssoc({"devices"}).output;
  EXPECT_EQ(kit::linesOf(list).size(), 2U) << list;
  EXPECT_NE(list.find("Loud"), std::string::npos) << list;
  router.stop();
}

TEST(AddAgain, ProposesTheNameAtATerminal) {
  SimRouter router;
  ASSERT_EQ(router.add("siren", {"--name", "Loud"}).status, 0);
  Terminal terminal(assocCommand({"add", "--again", "--place", "Hall"}));
  router.pressOnAdd("siren");
  terminal.waitFor("Press the button of the known device, so that it leaves");
  router.pressOnRemove("siren");
  terminal.waitFor("Press the button of the device to add");
  router.pressOnAdd("siren");
  terminal.waitFor("Name: Enter for Loud");
  terminal.waitFor("Name (");
  terminal.type("\r");
  terminal.waitFor("Added Loud (Siren, Hall).");
  EXPECT_EQ(terminal.end(), 0);
  router.stop();
}

TEST(AddAgain, EndsWhenAnotherDeviceLeaves) {
  SimRouter router;
  ASSERT_EQ(router.add("siren", {"--name", "Loud"}).status, 0);
  ASSERT_EQ(router.add("dimmer", {"--yes", "--name", "Lamp"}).status, 0);
  Program again(assocCommand({"add", "--again"}));
  router.pressOnAdd("siren");
  again.waitFor("so that it leaves.");
  router.pressOnRemove("dimmer");
  const Ended ended = again.end();
  EXPECT_EQ(ended.status, 1);
  EXPECT_NE(ended.errors.find("Another device Lamp (number 2) left."), std::string::npos) << ended.errors;
  router.stop();
}

TEST(TakingOut, IsOfferedForADeviceThatFitsNoKind) {
  SimRouter router;
  Terminal terminal(assocCommand({"add"}));
  router.pressOnAdd("zb-ac-plug-mute");
  terminal.waitFor("tembra-assoc: The device described itself, but it fits no kind of device.");
  terminal.waitFor("Take the device out of the radio network again?");
  terminal.waitFor("Yes or no [y/N]");
  terminal.type("y\r");
  terminal.waitFor("The button is that of the device that joined");
  router.pressOnRemove("zb-ac-plug-mute");
  terminal.waitFor("The device is out of the radio network.");
  terminal.waitFor("tembra-assoc: the device was not added.");
  EXPECT_EQ(terminal.end(), 1);
  router.stop();
}

TEST(TakingOut, IsLeftWhenNobodyAgrees) {
  SimRouter router;
  Terminal terminal(assocCommand({"add"}));
  router.pressOnAdd("zb-ac-plug-mute");
  terminal.waitFor("Yes or no [y/N]");
  terminal.type("\r");
  terminal.waitFor("tembra-assoc: the device was not added.");
  EXPECT_EQ(terminal.end(), 1);
  router.stop();
}

TEST(TakingOut, IsACommandOfItsOwn) {
  SimRouter router;
  const Ended added = router.add("no-basic-class", {});
  EXPECT_NE(added.errors.find("\"tembra-assoc remove --unlisted\" takes it out"), std::string::npos) << added.errors;
  const Ended removed = router.remove("no-basic-class", {"--unlisted"});
  EXPECT_EQ(removed.status, 0) << removed.errors;
  EXPECT_NE(removed.output.find("The device is out of the radio network."), std::string::npos) << removed.output;
  router.stop();
}

// The ZigBee server has no other word for it.
TEST(TakingOut, SaysThatTheZigbeeRadioMayHaveFailed) {
  SimRouter router;
  const Ended removed = router.remove("--fail=zigbee", {"--unlisted"});
  EXPECT_EQ(removed.status, 0) << removed.errors;
  EXPECT_EQ(removed.output.find("out of the radio network."), std::string::npos) << removed.output;
  EXPECT_NE(removed.errors.find("It says the same when its radio fails"), std::string::npos) << removed.errors;
  router.stop();
}

TEST(TakingOut, SaysThatAnotherDeviceLeft) {
  SimRouter router;
  ASSERT_EQ(router.add("siren", {"--name", "Loud"}).status, 0);
  const Ended removed = router.remove("siren", {"--unlisted"});
  EXPECT_EQ(removed.status, 1);
  EXPECT_NE(removed.output.find("Removed Loud (id 1)."), std::string::npos) << removed.output;
  EXPECT_NE(removed.sentence().find("Another device Loud (number 1) left."), std::string::npos) << removed.errors;
  router.stop();
}

struct Question {
  const char* radios;
  const char* text;
};

TEST(ResetQuestion, TellsWhichDevicesAreLost) {
  Database().put(Device(1, "Loud").type("Siren").zwave(5)).put(Device(2, "Door").type("ContactSwitch").zigbee(0x1A01));
  const Question questions[] = {
      {"zwave", "Reset the Z-Wave network? 1 device is lost: Loud (id 1). It stays in the device list."},
      {"zigbee", "Reset the ZigBee network? 1 device is lost: Door (id 2). It stays in the device list."},
      {"both",
       "Reset both radio networks? 2 devices are lost: Loud (id 1), Door (id 2). They stay in the device list."},
      {"all", "Reset both radio networks and empty the device list? 2 devices are lost: Loud (id 1), Door (id 2)."},
  };
  for (const Question& question : questions) {
    const Ended refused = runAssoc({"reset", question.radios});
    EXPECT_EQ(refused.status, 2);
    EXPECT_EQ(refused.sentence(),
              "tembra-assoc: " + std::string(question.text) + " Where nobody can be asked, --yes confirms.");
  }
}

TEST(ResetQuestion, NamesTenDevicesAtMost) {
  Database database;
  for (int id = 1; id <= 12; ++id) database.put(Device(id, "x").type("Siren").zwave(static_cast<unsigned char>(id)));
  const std::string question = runAssoc({"reset", "zwave"}).sentence();
  EXPECT_NE(question.find("12 devices are lost: x (id 1), "), std::string::npos) << question;
  EXPECT_NE(question.find("x (id 10) and 2 more."), std::string::npos) << question;
}

TEST(ResetOfAll, TellsEachDeviceThatLeavesTheList) {
  SimRouter router;
  ASSERT_EQ(router.add("siren", {"--name", "Loud"}).status, 0);
  const Ended reset = runAssoc({"reset", "all", "--yes"}, Clock::kFast);
  EXPECT_EQ(reset.status, 0) << reset.errors;
  EXPECT_NE(reset.output.find("Removed Loud (id 1).\nReset both radio networks, and emptied the device list. No radio "
                              "confirms a reset.\n"),
            std::string::npos)
      << reset.output;
  router.stop();
}

// The HA server of this router keeps another file.
TEST(ResetOfAll, TellsWhichDevicesRemain) {
  SimRouter router({"--db", "/tmp/other"});
  Database().put(Device(7, "Loud").type("Siren").zwave(5));
  const Ended reset = runAssoc({"reset", "all", "--yes"}, Clock::kFast);
  EXPECT_EQ(reset.status, 1);
  EXPECT_NE(reset.errors.find("The HA server kept Loud (number 7) in the device list."), std::string::npos)
      << reset.errors;
  EXPECT_NE(reset.sentence().find("The HA server kept some devices in the device list."), std::string::npos)
      << reset.errors;
  router.stop();
}

}  // namespace
}  // namespace tembra::test
