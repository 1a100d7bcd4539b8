#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <vector>

#include "sim/core/raw_datagram.h"
#include "sim/zwave/catalogue.h"
#include "sim/zwave/node_blocks.h"
#include "support/caller.h"
#include "support/running_sim.h"

namespace tembra::sim::test {
namespace {

constexpr const char* kFile = "/tmp/scenario.json";

std::vector<std::string> scenario(const std::string& steps) {
  std::ofstream(kFile) << "[" << steps << "]";
  return {"--speed", "100", "--scenario", kFile};
}

TEST(Scenario, PressesWhenTheLibraryAsks) {
  Caller caller;
  RunningSim sim(scenario(R"({"on": "add", "after": 1, "press": "siren"}, {"on": "remove", "press": "siren"},
                             {"after": 2, "stop": true})"));
  caller.add();
  for (int answer = 0; answer < 3; ++answer) EXPECT_EQ(caller.hear().block.nodeId, 2);
  caller.remove();
  for (int answer = 0; answer < 2; ++answer) EXPECT_EQ(caller.hear().block.nodeId, 2);
  EXPECT_EQ(sim.program().end().status, 0) << sim.program().errors();
}

void awaitStatus(const RunningSim& sim, const char* line) {
  while (sim.ask("status").text.find(line) == std::string::npos) {
  }
}

TEST(Scenario, KillsAndStartsServers) {
  Caller caller;
  RunningSim sim(scenario(R"({"on": "add", "kill": "zwave"}, {"on": "nest-unlink", "start": "zwave"},
                             {"on": "add", "press": "siren"}, {"after": 2, "stop": true})"));
  caller.add();
  awaitStatus(sim, "Z-Wave server: not running\n");
  caller.nest(109);
  awaitStatus(sim, "Z-Wave server: idle\n");
  caller.add();
  EXPECT_EQ(caller.hear().as<NestAnswer>().command, 122);
  EXPECT_EQ(caller.hear().block.nodeId, 2);
  EXPECT_EQ(sim.program().end().status, 0) << sim.program().errors();
}

TEST(Scenario, AfterAnAddBothRadiosListen) {
  Caller caller;
  RunningSim sim(scenario(
      R"({"on": "add", "press": "zb-plug"}, {"on": "zigbee-remove", "fail": "zigbee"}, {"after": 1, "stop": true})"));
  caller.zigbeeAdd();
  caller.add();
  for (const int status : {1, 6, 10}) EXPECT_EQ(caller.hear().as<ZbDeviceInfo>().msgCode, status);
  caller.zigbeeRemove();
  EXPECT_EQ(caller.hear().as<ZbDeviceInfo>().msgCode, 12);
  EXPECT_EQ(sim.program().end().status, 0) << sim.program().errors();
}

struct EventRow {
  const char* event;
  void (*cause)(Caller&);
};

constexpr EventRow kEvents[] = {
    {"zigbee-add", [](Caller& caller) { caller.zigbeeAdd(); }},
    {"zigbee-remove", [](Caller& caller) { caller.zigbeeRemove(); }},
    {"zigbee-cancel", [](Caller& caller) { caller.zigbeeCancel(); }},
    {"zigbee-reset", [](Caller& caller) { caller.zigbeeReset(); }},
    {"hue-discover", [](Caller& caller) { caller.hue(114); }},
    {"hue-add", [](Caller& caller) { caller.hue(100, "02a1b2fffe0c0001"); }},
    {"hue-bulb", [](Caller& caller) { caller.hue(105, "02a1b2fffe0c0001", "Lamp"); }},
    {"hue-refresh", [](Caller& caller) { caller.hue(106, "02a1b2fffe0c0001", "user"); }},
    {"hue-remove", [](Caller& caller) { caller.hue(109, "02a1b2fffe0c0001"); }},
    {"nest-link", [](Caller& caller) { caller.nest(100, "code"); }},
    {"nest-unlink", [](Caller& caller) { caller.nest(109); }},
};

TEST(Scenario, WaitsForEveryEventOfTheServers) {
  for (const EventRow& row : kEvents) {
    Caller caller;
    RunningSim sim(scenario(R"({"on": ")" + std::string(row.event) + R"(", "stop": true})"));
    row.cause(caller);
    EXPECT_EQ(sim.program().end().status, 0) << row.event << ": " << sim.program().errors();
  }
}

// The server's own answer to the discovery is lost: on a slow machine it comes before the steps behind it are played.
TEST(Scenario, AnswersOnDemandAndChangesTheBridges) {
  Caller caller;
  RunningSim sim(scenario(R"({"fault": "bridges:lost"}, {"on": "hue-discover", "bridges": 3}, {"answer": "hue 0"},
                             {"answer": "nest 124 -1"}, {"press": "hue-button"}, {"stop": true})"));
  caller.hue(114);
  EXPECT_EQ(caller.hear().as<HueAnswer>().count, 3);
  EXPECT_EQ(caller.hear().as<NestAnswer>().status, -1);
  EXPECT_EQ(sim.program().end().status, 0) << sim.program().errors();
}

TEST(Scenario, StepsWaitForEachOther) {
  Caller caller;
  RunningSim sim(scenario(R"({"on": "add", "fail": true}, {"on": "add", "fault": "joined:code=7"},
                             {"press": "dimmer"}, {"on": "cancel", "stop": true})"));
  caller.cancel();  // too early for the last step
  caller.add();
  EXPECT_EQ(caller.hear().block.nodeId, 255);
  caller.add();
  EXPECT_EQ(caller.hear().block.nodeId, 7);
  EXPECT_TRUE(sim.program().running());
  caller.cancel();
  EXPECT_EQ(sim.program().end().status, 0) << sim.program().errors();
}

TEST(Scenario, CountsFromTheStartWithAt) {
  RunningSim sim(scenario(R"({"at": 2, "fault": "joined:lost"}, {"at": 1, "stop": true})"));
  EXPECT_EQ(sim.program().end().status, 0) << sim.program().errors();
}

TEST(Scenario, AStepThatIsRefusedIsTrouble) {
  RunningSim sim(scenario(R"({"press": "siren"}, {"stop": true})"));
  EXPECT_EQ(sim.program().end().status, 1);
  EXPECT_NE(sim.program().errors().find("the scenario's \"press siren\" failed: nobody listens"), std::string::npos);
}

TEST(Scenario, SendsAnyDatagramOfAnybody) {
  Caller caller;
  RunningSim sim(scenario(R"({"on": "add", "send": "zwave 1036 07"}, {"send": "zigbee 444 021a000000000000000003"},
                             {"send": "hue 5 0102030405"}, {"send": "nest 12"}, {"send": "ha 3 010203"},
                             {"send": "127.0.0.77:99 2 ff"}, {"note": "that was all"}, {"stop": true})"));
  caller.add();
  EXPECT_EQ(caller.hear().block.nodeId, 7);
  EXPECT_EQ(caller.hear().as<ZbDeviceInfo>().msgCode, 3);
  EXPECT_EQ(caller.hear().bytes, (std::vector<unsigned char>{1, 2, 3, 4, 5}));
  EXPECT_EQ(caller.hear().bytes, std::vector<unsigned char>(12));
  EXPECT_EQ(caller.hear().sender, "127.255.255.1");
  const Heard stranger = caller.hear();
  EXPECT_EQ(stranger.sender, "127.0.0.77");
  EXPECT_EQ(stranger.bytes, (std::vector<unsigned char>{0xff, 0}));
  EXPECT_EQ(sim.program().end().status, 0);
}

// As if its button had been pressed: it can leave by a press.
TEST(Scenario, ADeviceThatIsSentIsInTheNetwork) {
  Caller caller;
  RunningSim sim;
  const auto catalogue = ZwaveCatalogue::load(TEMBRA_SIM_CATALOGUE);
  const ZwaveDevice* const siren = catalogue.find("siren");
  ASSERT_NE(siren, nullptr);
  sim.tell("send " + rawDatagramText("zwave", bytesOf(describedNode(9, *siren))));
  EXPECT_EQ(caller.hear().block.nodeId, 9);
  caller.remove();
  sim.tell("press siren");
  EXPECT_EQ(caller.hear().block.nodeId, 9);
}

TEST(Scenario, MistakesInAFileAreOneSentence) {
  const std::vector<std::vector<std::string>> mistakes{
      {R"({"press": "toaster"})", "(step 1): there is no device \"toaster\""},
      {R"({"stop": true}, {"fault": "joined:odd"})", "(step 2): no fault is called \"odd\""},
      {R"({"on": "rain", "stop": true})", "nothing called \"rain\" happens"},
      {R"({"after": -1, "stop": true})", "-1 is not a number of seconds"},
      {R"({"at": 1e308, "stop": true})", "1e+308 is not a number of seconds, a year at most"},
      {R"({"after": 31536001, "stop": true})", "31536001 is not a number of seconds, a year at most"},
      {R"({"after": 1e999, "stop": true})", "has a number that is too large"},
      {R"({"after": 1})", "a step that does nothing"},
      {R"({"stop": false})", "\"stop\" is true or left out"},
      {R"({"fail": false})", "\"fail\" is true or left out"},
      {R"({"send": "mars 4 01"})", "\"mars\" sends nothing; zwave, zigbee, hue, nest, ha or ADDRESS:PORT do"},
      {R"({"send": "127.0.0.66:0 4 01"})", "\"0\" is not a number from 1 to 65535"},
      {R"({"send": "zwave 65508"})", "\"65508\" is not a number from 0 to 65507"},
      {R"({"send": "zwave"})", "\"\" is not a number"},
      {R"({"send": "zwave 4 0102030405"})", "a datagram is SENDER LENGTH DIGITS"},
      {R"({"send": "zwave 4 012"})", "a datagram is SENDER LENGTH DIGITS"},
      {R"({"send": "zwave 4 0g"})", "a datagram is SENDER LENGTH DIGITS"},
      {R"({"send": "zwave 4 01 02"})", "a datagram is SENDER LENGTH DIGITS"},
      {R"({"bridges": 51})", "51 is not from 0 to 50"},
      {R"({"bridges": "many"})", "\"many\" is not a number"},
      {R"({"stop": true, "fail": true})", "a step does one thing only"},
      {R"({"at": 1, "on": "add", "stop": true})", "\"at\" goes with neither"},
      {R"({"dance": true})", "a step has no member \"dance\""},
      {R"({"press": 3})", "3 is not a text"},
      {R"(3)", "(step 1): "},
      {R"({)", "is no JSON text"},
  };
  for (const auto& mistake : mistakes) {
    RunningSim sim(scenario(mistake[0]));
    EXPECT_EQ(sim.program().end().status, 1) << mistake[0];
    const std::string errors = sim.program().errors();
    EXPECT_TRUE(errors.starts_with("tembra-sim: the scenario /tmp/scenario.json")) << errors;
    EXPECT_NE(errors.find(mistake[1]), std::string::npos) << errors;
  }
}

}  // namespace
}  // namespace tembra::sim::test
