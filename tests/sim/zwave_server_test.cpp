// What the Z-Wave server answers, in the order of the commands.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "sim/core/record_bytes.h"
#include "sim/zwave/catalogue.h"
#include "support/caller.h"
#include "support/running_sim.h"

namespace tembra::sim::test {
namespace {

class ZwaveServerTest : public testing::Test {
 protected:
  std::string answersTo(const std::string& request) {
    sim.tell(request);
    sim.awaitIdle();
    return summary(caller.heardSoFar());
  }
  std::string add(const std::string& device) {
    caller.add();
    return answersTo("press " + device);
  }
  std::string remove(const std::string& device) {
    caller.remove();
    return answersTo("press " + device);
  }

  Caller caller;
  RunningSim sim;
};

TEST_F(ZwaveServerTest, AddAnswersJoinedIdentityAndInfo) { EXPECT_EQ(add("metering-plug"), "1036/2 1036/2 1036/2"); }

TEST_F(ZwaveServerTest, InfoDescribesEveryDeviceOfTheCatalogue) {
  const ZwaveCatalogue catalogue = ZwaveCatalogue::load(TEMBRA_SIM_CATALOGUE);
  unsigned char node = 1;
  for (const ZwaveDevice& device : catalogue.devices()) {
    SCOPED_TRACE(device.label);
    caller.add();
    sim.tell("press " + device.label);
    ZwNodeInfo expected{};
    expected.nodeId = ++node;
    EXPECT_EQ(bytesOf(caller.hear().block), bytesOf(expected));
    EXPECT_EQ(bytesOf(caller.hear().block), bytesOf(expected));
    expected.basicClass = device.basicClass;
    expected.genericClass = device.genericClass;
    expected.specificClass = device.specificClass;
    std::copy(device.commandClasses.begin(), device.commandClasses.end(), expected.commandClasses);
    expected.commandClasses[device.commandClasses.size()] = 0xFF;
    std::copy(device.values.begin(), device.values.end(), expected.values);
    EXPECT_EQ(bytesOf(caller.hear().block), bytesOf(expected));
  }
  EXPECT_EQ(node, 1 + catalogue.devices().size());
}

TEST_F(ZwaveServerTest, AFailingPressAnswersNode255) {
  caller.add();
  EXPECT_EQ(answersTo("fail"), "1036/255");
  caller.remove();
  EXPECT_EQ(answersTo("fail"), "1036/255");
}

TEST_F(ZwaveServerTest, ADeviceThatWasNeverStoredIsDescribedAgainUnderItsNode) {
  EXPECT_EQ(add("siren"), "1036/2 1036/2 1036/2");
  EXPECT_EQ(add("dimmer"), "1036/3 1036/3 1036/3");
  EXPECT_EQ(add("siren"), "1036/2 1036/2 1036/2");
}

TEST_F(ZwaveServerTest, ANumberedDeviceIsADeviceOfItsOwn) {
  add("siren");
  EXPECT_EQ(add("siren#2"), "1036/3 1036/3 1036/3");
}

TEST_F(ZwaveServerTest, RemoveAnswersRemovedAndClosing) {
  add("siren");
  EXPECT_EQ(remove("siren"), "1036/2 1036/2");
}

TEST_F(ZwaveServerTest, RemovingAnUnknownDeviceAnswersNode0Only) { EXPECT_EQ(remove("siren"), "1036/0"); }

TEST_F(ZwaveServerTest, ARemovedDeviceIsForgottenAndItsNodeNotReusedAtOnce) {
  add("siren");
  remove("siren");
  EXPECT_EQ(remove("siren"), "1036/0");
  EXPECT_EQ(add("siren"), "1036/3 1036/3 1036/3");
}

TEST_F(ZwaveServerTest, CancelIsNotAnsweredAndForgetsWhatIsToCome) {
  sim.tell("fault identity:late=600000");
  caller.add();
  sim.tell("press siren");
  EXPECT_EQ(caller.hear().block.nodeId, 2);
  caller.cancel();
  sim.awaitIdle();
  EXPECT_EQ(summary(caller.heardSoFar()), "");
}

TEST_F(ZwaveServerTest, ANewCommandReplacesARunningOne) {
  sim.tell("fault identity:late=600000");
  caller.add();
  sim.tell("press siren");
  EXPECT_EQ(caller.hear().block.nodeId, 2);
  EXPECT_EQ(remove("siren"), "1036/2 1036/2");
}

TEST_F(ZwaveServerTest, ResetForgetsTheNodes) {
  add("siren");
  caller.reset();
  EXPECT_EQ(caller.hear().block.nodeId, 0);
  EXPECT_EQ(remove("siren"), "1036/0");
}

TEST_F(ZwaveServerTest, AResetThatCutsOffAnOperationIsNotAnswered) {
  add("siren");
  caller.add();
  caller.reset();
  sim.awaitIdle();
  EXPECT_EQ(summary(caller.heardSoFar()), "");
  EXPECT_EQ(remove("siren"), "1036/0");
}

TEST_F(ZwaveServerTest, APressThatNobodyExpectsIsRefused) {
  EXPECT_EQ(sim.ask("press siren").text, "nobody listens: the Z-Wave server is neither adding nor removing");
  caller.add();
  caller.cancel();
  EXPECT_FALSE(sim.ask("press siren").done);
  EXPECT_FALSE(sim.ask("fail").done);
}

TEST_F(ZwaveServerTest, ASecondPressDuringAnOperationIsRefused) {
  sim.tell("fault joined:late=600000");
  caller.add();
  sim.tell("press siren");
  EXPECT_EQ(sim.ask("press dimmer").text, "the Z-Wave server is busy with another device");
}

TEST_F(ZwaveServerTest, APressOfAnUnknownDeviceSaysWhichExist) {
  const Outcome outcome = sim.ask("press toaster");
  EXPECT_FALSE(outcome.done);
  EXPECT_NE(outcome.text.find("metering-plug, plain-plug"), std::string::npos) << outcome.text;
}

TEST_F(ZwaveServerTest, FailsWhenEveryNodeIdIsTaken) {
  constexpr int ids = 231;
  sim.tell("fault identity:silence:" + std::to_string(ids));
  for (int device = 1; device <= ids; ++device) {
    caller.add();
    sim.tell("press siren#" + std::to_string(device));
    EXPECT_EQ(caller.hear().block.nodeId, device + 1);
  }
  EXPECT_EQ(add("dimmer"), "1036/255");
}

}  // namespace
}  // namespace tembra::sim::test
