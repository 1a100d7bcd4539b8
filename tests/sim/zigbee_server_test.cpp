// What the ZigBee server answers, in the order of the commands.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "sim/core/record_bytes.h"
#include "sim/zigbee/catalogue.h"
#include "support/caller.h"
#include "support/running_sim.h"

namespace tembra::sim::test {
namespace {

constexpr unsigned short kFirst = 0x1A01;
constexpr unsigned short kNobody = 0xFFFE;

class ZigbeeServerTest : public testing::Test {
 protected:
  std::string answersTo(const std::string& request) {
    sim.tell(request);
    sim.awaitIdle();
    const std::vector<Heard> heard = caller.heardSoFar();
    address = heard.empty() ? 0 : heard.back().as<ZbDeviceInfo>().shortAddress;
    return statuses(heard);
  }
  std::string add(const std::string& device) {
    caller.zigbeeAdd();
    return answersTo("press " + device);
  }
  std::string remove(const std::string& device) {
    caller.zigbeeRemove();
    return answersTo("press " + device);
  }

  Caller caller;
  RunningSim sim;
  unsigned short address = 0;  ///< of the last answer
};

TEST_F(ZigbeeServerTest, AddAnswersFoundGettingAndComplete) {
  EXPECT_EQ(add("zb-plug"), "444/1 444/6 444/10");
  EXPECT_EQ(address, kFirst);
}

ZbDeviceInfo bare(unsigned short address, int status) {
  ZbDeviceInfo description{};
  description.shortAddress = address;
  description.msgCode = static_cast<unsigned char>(status);
  return description;
}

ZbDeviceInfo complete(unsigned short address, const ZigbeeDevice& device) {
  ZbDeviceInfo description = bare(address, 10);
  std::copy(device.clusters.begin(), device.clusters.end(), description.clusters);
  description.clusters[device.clusters.size()] = {0xFFFF, 0};
  setText(description.manufacturer, device.manufacturer);
  setText(description.model, device.model);
  description.zoneType = device.zoneType;
  description.acCheckA = device.acChecks[0];
  description.acCheckB = device.acChecks[1];
  description.acCheckC = device.acChecks[2];
  description.productWordA = device.productWords[0];
  description.productWordB = device.productWords[1];
  return description;
}

TEST_F(ZigbeeServerTest, DescribesEveryDeviceOfTheCatalogue) {
  const ZigbeeCatalogue catalogue = ZigbeeCatalogue::load(TEMBRA_SIM_CATALOGUE);
  unsigned short next = kFirst;
  for (const ZigbeeDevice& device : catalogue.devices()) {
    SCOPED_TRACE(device.label);
    caller.zigbeeAdd();
    sim.tell("press " + device.label);
    EXPECT_EQ(caller.hear().bytes, bytesOf(bare(next, 1)));
    EXPECT_EQ(caller.hear().bytes, bytesOf(bare(next, 6)));
    EXPECT_EQ(caller.hear().bytes, bytesOf(complete(next, device)));
    ++next;
  }
  EXPECT_EQ(next, kFirst + catalogue.devices().size());
}

TEST_F(ZigbeeServerTest, AFailingPressAnswersAddingFailedOrUnknownDeviceLeft) {
  caller.zigbeeAdd();
  EXPECT_EQ(answersTo("fail zigbee"), "444/11");
  caller.zigbeeRemove();
  EXPECT_EQ(answersTo("fail zigbee"), "444/12");
}

TEST_F(ZigbeeServerTest, ADeviceThatJoinsAgainIsDescribedAgainUnderItsAddress) {
  add("zb-plug");
  EXPECT_EQ(add("zb-siren"), "444/1 444/6 444/10");
  EXPECT_EQ(address, kFirst + 1);
  EXPECT_EQ(add("zb-plug"), "444/1 444/6 444/10");
  EXPECT_EQ(address, kFirst);
}

TEST_F(ZigbeeServerTest, ANumberedDeviceIsADeviceOfItsOwn) {
  add("zb-plug");
  add("zb-plug#2");
  EXPECT_EQ(address, kFirst + 1);
}

TEST_F(ZigbeeServerTest, RemoveAnswersLeftWithTheAddressOfTheDevice) {
  add("zb-plug");
  add("zb-siren");
  EXPECT_EQ(remove("zb-plug"), "444/2");
  EXPECT_EQ(address, kFirst);
}

TEST_F(ZigbeeServerTest, RemovingAnUnknownDeviceAnswersUnknownWithoutAnAddress) {
  EXPECT_EQ(remove("zb-plug"), "444/12");
  EXPECT_EQ(address, kNobody);
}

TEST_F(ZigbeeServerTest, ARemovedDeviceIsForgottenAndItsAddressNotReusedAtOnce) {
  add("zb-plug");
  remove("zb-plug");
  EXPECT_EQ(remove("zb-plug"), "444/12");
  add("zb-plug");
  EXPECT_EQ(address, kFirst + 1);
}

TEST_F(ZigbeeServerTest, CancelIsNotAnsweredAndForgetsWhatIsToCome) {
  sim.tell("fault getting:late=600000");
  caller.zigbeeAdd();
  sim.tell("press zb-plug");
  EXPECT_EQ(statuses({caller.hear()}), "444/1");
  caller.zigbeeCancel();
  sim.awaitIdle();
  EXPECT_EQ(statuses(caller.heardSoFar()), "");
}

TEST_F(ZigbeeServerTest, ANewCommandReplacesARunningOne) {
  sim.tell("fault getting:late=600000");
  caller.zigbeeAdd();
  sim.tell("press zb-plug");
  EXPECT_EQ(statuses({caller.hear()}), "444/1");
  EXPECT_EQ(remove("zb-plug"), "444/2");
}

TEST_F(ZigbeeServerTest, ResetForgetsTheDevicesAndIsNotAnswered) {
  add("zb-plug");
  caller.zigbeeReset();
  EXPECT_EQ(remove("zb-plug"), "444/12");
  EXPECT_EQ(sim.stop(), 0);
}

TEST_F(ZigbeeServerTest, TheFirstHalfOfAResetForgetsNothing) {
  add("zb-plug");
  caller.zigbee("n l", "");
  EXPECT_EQ(remove("zb-plug"), "444/2");
}

TEST_F(ZigbeeServerTest, APressThatNobodyExpectsIsRefused) {
  EXPECT_EQ(sim.ask("press zb-plug").text, "nobody listens: the ZigBee server is neither adding nor removing");
  caller.add();  // the other radio
  EXPECT_FALSE(sim.ask("press zb-plug").done);
  EXPECT_FALSE(sim.ask("fail zigbee").done);
}

TEST_F(ZigbeeServerTest, ASecondPressDuringAnOperationIsRefused) {
  sim.tell("fault found:late=600000");
  caller.zigbeeAdd();
  sim.tell("press zb-plug");
  EXPECT_EQ(sim.ask("press zb-siren").text, "the ZigBee server is busy with another device");
}

TEST_F(ZigbeeServerTest, SaysEveryStatusOnDemandEvenWhenIdle) {
  for (int status = 0; status <= 255; ++status) {
    sim.tell("answer zigbee " + std::to_string(status));
    EXPECT_EQ(caller.hear().bytes, bytesOf(bare(kNobody, status)));
  }
}

TEST_F(ZigbeeServerTest, SaysAStatusOfADeviceOnDemand) {
  add("zb-water");
  sim.tell("answer zigbee 3 zb-water");
  const auto known = caller.hear().as<ZbDeviceInfo>();
  EXPECT_EQ(known.shortAddress, kFirst);
  EXPECT_EQ(known.msgCode, 3);
  EXPECT_EQ(known.zoneType, 0x2A);
  sim.tell("answer zigbee 10 zb-siren");
  EXPECT_EQ(caller.hear().as<ZbDeviceInfo>().shortAddress, kNobody);
}

TEST_F(ZigbeeServerTest, WhatIsSaidOnDemandReplacesNothing) {
  sim.tell("fault found:late=600000");
  caller.zigbeeAdd();
  sim.tell("press zb-plug");
  sim.tell("answer zigbee 3");
  EXPECT_EQ(statuses({caller.hear()}), "444/3");
  EXPECT_EQ(sim.ask("press zb-siren").text, "the ZigBee server is busy with another device");
}

TEST_F(ZigbeeServerTest, DemandsThatMakeNoSenseAreRefused) {
  for (const char* demand : {"answer", "answer zigbee", "answer zigbee 256", "answer zigbee -1", "answer zigbee x",
                             "answer zigbee 1 siren", "answer radio 1", "fail hue"}) {
    EXPECT_FALSE(sim.ask(demand).done) << demand;
  }
  EXPECT_EQ(statuses(caller.heardSoFar()), "");
}

TEST_F(ZigbeeServerTest, BothRadiosListenUntilOneIsCancelled) {
  caller.zigbeeAdd();
  caller.add();
  sim.tell("press zb-plug");
  caller.cancel();
  EXPECT_FALSE(sim.ask("press siren").done);
  sim.awaitIdle();
  EXPECT_EQ(statuses(caller.heardSoFar()), "444/1 444/6 444/10");
  caller.zigbeeRemove();
  caller.remove();
  sim.tell("press siren");
  caller.zigbeeCancel();
  EXPECT_FALSE(sim.ask("press zb-plug").done);
  sim.awaitIdle();
  EXPECT_EQ(summary(caller.heardSoFar()), "1036/0");
  EXPECT_EQ(sim.stop(), 0);
}

}  // namespace
}  // namespace tembra::sim::test
