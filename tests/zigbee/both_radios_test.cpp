// Both radios answer one request, in every order: who takes it over, who is cancelled, what the front end hears.
#include <gtest/gtest.h>

#include <cstring>
#include <sstream>

#include "both_radios_page.h"
#include "devices.h"
#include "kit/router_test.h"

using kit::Device;
using kit::lines;
using kit::Node;
using kit::Router;
using kit::ZigbeeDevice;

namespace {

using BothRadiosTest = kit::RouterTest;

void send(Router& router, const Answer& answer) {
  constexpr unsigned char staticController = 0x02, gateway = 7;
  if (answer.isZigbee) {
    router.zigbee().send(ZigbeeDevice(kLamp).status(answer.value));
  } else {
    router.zwave().send(Node(static_cast<unsigned char>(answer.value)).generic(staticController).specific(gateway));
  }
}

// Of the trace only what leaves the library, "send <to> <length>" and the events, and the time-outs.
std::string toldOf(const std::string& trace) {
  std::istringstream stream(trace);
  std::string told;
  for (std::string line; std::getline(stream, line);) {
    if (line.rfind("event ", 0) == 0 || line.rfind("timeout ", 0) == 0) told += line + "\n";
    if (line.rfind("send ", 0) != 0) continue;
    std::istringstream words(line);
    std::string word, to, length;
    words >> word >> to >> length;
    told.append(word).append(" ").append(to).append(" ").append(length).append("\n");
  }
  return told;
}

std::string describe(const std::vector<Answer>& answers) {
  std::string text;
  for (const Answer& answer : answers) {
    text += answer.isZigbee ? " zigbee " : " zwave ";
    text += std::to_string(answer.value);
  }
  return text;
}

/// Every sequence of answers of one length.
class Orders {
 public:
  Orders(Router& router, std::vector<Answer> alphabet) : router_(router), alphabet_(std::move(alphabet)) {
    router_.watch(kit::kWatchTimeouts);
  }

  void tryAll(std::size_t length, int state) {
    if (answers_.size() == length) return tryOne(state);
    for (const Answer& answer : alphabet_) {
      answers_.push_back(answer);
      tryAll(length, state);
      answers_.pop_back();
    }
  }

  int tried = 0;

 private:
  // The wait that is under way keeps its time-out from one sequence to the next.
  void begin(const Standing& standing) {
    TembraAssociation& assoc = router_.assoc();
    assoc.assocState = standing.state;
    assoc.lastEventCode = standing.last;
    assoc.cancelTarget = standing.cancel;
    assoc.activeRadio = standing.radio;
    idle = static_cast<unsigned char>(standing.idle);
    std::strcpy(cmdtype, standing.commandType.c_str());
    router_.forget();
  }

  void tryOne(int state) {
    Standing standing;
    standing.state = state;
    standing.timeout = timeout_;
    BothRadiosPage page(standing);
    begin(standing);
    for (const Answer& answer : answers_) {
      send(router_, answer);
      const std::string told = page.on(answer);
      const std::string expected = told + "timeout " + std::to_string(page.now().timeout) + "\n";
      ASSERT_EQ(toldOf(router_.takeTrace()), expected) << describe(answers_) << " from state " << state;
      ASSERT_EQ(router_.state(), page.now().text()) << describe(answers_) << " from state " << state;
    }
    timeout_ = page.now().timeout;
    ++tried;
  }

  Router& router_;
  const std::vector<Answer> alphabet_;
  int timeout_ = 180;
  std::vector<Answer> answers_;
};

void prepareWithLampAndBlind(Router& router) {
  router.connect();
  router.database().put(Device(7, "Lamp").zigbee(kLamp)).put(Device(8, "Blind").zwave(kKnownNode));
}

}  // namespace

TEST_F(BothRadiosTest, AnAddInEveryOrderOfAnswers) {
  prepareWithLampAndBlind(router);
  Orders orders(router, {zigbee(1), zigbee(6), zigbee(10), zigbee(2), zigbee(3), zigbee(12), zwave(5),
                         zwave(kKnownNode), zwave(0), zwave(255)});
  orders.tryAll(3, ASSOC);
  EXPECT_EQ(orders.tried, 10 * 10 * 10);
}

TEST_F(BothRadiosTest, AWholeAddInEveryOrderOfAnswers) {
  prepareWithLampAndBlind(router);
  Orders orders(router, {zigbee(1), zigbee(6), zigbee(10), zwave(5)});
  orders.tryAll(5, ASSOC);
  EXPECT_EQ(orders.tried, 4 * 4 * 4 * 4 * 4);
}

TEST_F(BothRadiosTest, ARemovalInEveryOrderOfAnswers) {
  prepareWithLampAndBlind(router);
  Orders orders(router, {zigbee(2), zigbee(5), zigbee(12), zwave(5), zwave(kKnownNode), zwave(0), zwave(255)});
  orders.tryAll(3, DEASSOC);
  EXPECT_EQ(orders.tried, 7 * 7 * 7);
}

TEST_F(BothRadiosTest, ZwaveTakesOverEvenFromAFoundZigbeeDevice) {
  prepareWithLampAndBlind(router);
  router.assoc().addDevZigbeeZwave();
  send(router, zigbee(1));
  EXPECT_EQ(router.state(), "state 1 idle 0 last 3 cancel 1 radio 1 cmdtype AddingSensor");
  send(router, zwave(5));
  EXPECT_EQ(router.state(), "state 4 idle 0 last 3 cancel 2 radio 2 cmdtype AddingSensor");
  router.forget();
  send(router, zigbee(10));
  EXPECT_EQ(router.takeTrace(), "") << "what the ZigBee device goes on to say is ignored";
  EXPECT_EQ(router.assoc().zbDevice.msgCode, 10) << "but stored";
}

TEST_F(BothRadiosTest, AZigbeeDeviceInBetweenReplacesThePendingRecord) {
  prepareWithLampAndBlind(router);
  TembraAssociation& assoc = router.assoc();
  assoc.addDevZigbeeZwave();
  router.zigbee().send(ZigbeeDevice(kLamp).status(10).cluster(0x0006));
  ASSERT_EQ(assoc.zbDevice.devType, 1);
  router.zigbee().send(ZigbeeDevice(0x4321).status(1));
  EXPECT_EQ(assoc.zbDevice.shortAddress, 0x4321);
  EXPECT_EQ(assoc.zbDevice.devType, 0);
  EXPECT_STREQ(assoc.devName, "BinarySwitch #0") << "the name stays";
}

TEST_F(BothRadiosTest, AnyZwaveAnswerEndsTheStateOfACreatedDevice) {
  prepareWithLampAndBlind(router);
  router.assoc().addDevZigbeeZwave();
  for (const int status : {1, 6, 10}) send(router, zigbee(status));
  router.forget();
  send(router, zwave(255));
  EXPECT_EQ(router.takeTrace(), lines({"log 0 libTembraAssoc:Received Packet from Z-wave"}));
  EXPECT_EQ(router.state(), "state 0 idle 0 last 7 cancel 1 radio 1 cmdtype EditNameLocation");
}
