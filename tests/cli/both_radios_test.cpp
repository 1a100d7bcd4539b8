// One operation listens on both radios: the one that answers first has it, the other is cancelled and hears no more
// presses.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "support/files.h"
#include "support/sim_router.h"

namespace tembra::test {
namespace {

struct Race {
  const char* first;
  const char* second;
  const char* cancelled;  ///< the server of the second
};

constexpr Race kRaces[] = {{"siren", "zb-siren", "ZigBee server"}, {"zb-siren", "siren", "Z-Wave server"}};

// Presses the second device's button once its radio was cancelled; it is refused.
void pressTooLate(SimRouter& router, const Race& race) {
  router.waitFor("library -> " + std::string(race.cancelled) + "   cancel");
  EXPECT_EQ(Program({TEMBRA_SIM_PROGRAM, "press", race.second}).end().status, 1);
}

void expectOneCancelled(const Race& race, const std::string& command, const Told& told) {
  const std::vector<std::string> listened = {command};
  const std::vector<std::string> cancelled = {command, "cancel"};
  const bool zigbeeWon = race.cancelled == std::string("Z-Wave server");
  EXPECT_EQ(told.zigbee, zigbeeWon ? listened : cancelled);
  EXPECT_EQ(told.zwave, zigbeeWon ? cancelled : listened);
}

TEST(BothRadios, TheFirstAnswerHasTheAdd) {
  for (const Race& race : kRaces) {
    SCOPED_TRACE(race.first);
    const std::string database = "/tmp/ddb" + std::to_string(&race - kRaces);
    SimRouter router({"--db", database});
    Program adding(assocCommand({"add", "--db", database, "--name", race.first}));
    router.pressOnAdd(race.first);
    pressTooLate(router, race);
    const Ended added = adding.end();
    EXPECT_EQ(added.status, 0) << added.errors;
    router.waitFor("device 1 stored: " + std::string(race.first));
    expectOneCancelled(race, "add a device", router.stop());
  }
}

TEST(BothRadios, TheFirstAnswerHasTheRemoval) {
  for (const Race& race : kRaces) {
    SCOPED_TRACE(race.first);
    const std::string database = "/tmp/ddb" + std::to_string(&race - kRaces);
    const std::vector<std::string> options = {"--db", database};
    {
      SimRouter router(options);
      for (const char* device : {race.first, race.second}) {
        ASSERT_EQ(router.add(device, {"--db", database, "--name", device}).status, 0);
        router.waitFor("stored: " + std::string(device));
      }
      router.stop();
    }
    SimRouter router(options);
    Program removing(assocCommand({"remove", "--yes", "--db", database}));
    router.pressOnRemove(race.first);
    pressTooLate(router, race);
    const Ended removed = removing.end();
    EXPECT_EQ(removed.status, 0) << removed.errors;
    EXPECT_NE(removed.output.find("Removed " + std::string(race.first) + " (id 1)."), std::string::npos);
    router.waitFor("dropped");
    EXPECT_EQ(nlohmann::json::parse(runAssoc({"devices", "--json", "--db", database}).output).at("name"), race.second);
    expectOneCancelled(race, "remove a device", router.stop());
  }
}

// Both pressed at the same moment: what the second says may be on its way when it is cancelled.
TEST(BothRadios, AnAnswerThatCrossesTheCancelIsIgnored) {
  writeFile("/tmp/steps.json", R"([{"on": "add", "press": "siren"}, {"press": "zb-siren"}])");
  SimRouter router({"--scenario", "/tmp/steps.json"});
  const Ended added = runAssoc({"add"});
  EXPECT_EQ(added.status, 0) << added.errors;
  EXPECT_NE(added.output.find("A device answers on Z-Wave."), std::string::npos) << added.output;
  expectOneCancelled(kRaces[0], "add a device", router.stop());
}

}  // namespace
}  // namespace tembra::test
