// Datagrams of processes that pass for a daemon by address alone. Each attack does harm without strict mode, and
// changes nothing in strict mode.
#include <gtest/gtest.h>
#include <tembra/service.h>

#include <cstring>
#include <iterator>

#include "ipdev/wire.h"
#include "kit/router.h"

using kit::Bytes;
using kit::Device;
using kit::Node;
using kit::Router;
using kit::ZigbeeDevice;

namespace {

constexpr unsigned char kLock = 9;
constexpr unsigned short kDoor = 0x1234;

// A process of another user beside the daemons that run.
void zwaveFromAnotherPort(Router& router) { router.from("127.255.255.254", 6666).send(Node(kLock)); }

void addFromAnotherPort(Router& router) {
  kit::Peer attacker = router.from("127.255.255.254", 6666);
  for (const Node& node : {Node(77), Node(77), Node(77).generic(0x10).specific(1)}) attacker.send(node);
}

void zigbeeFromAnotherPort(Router& router) { router.from("127.255.255.253", 6666).send(ZigbeeDevice(kDoor).status(2)); }

void beginRemoval(Router& router) { router.assoc().removeDevZigbeeZwave(); }

void cancelRemoval(Router& router) {
  beginRemoval(router);
  router.assoc().sendCancelTo(cancel_both);
}

void letRemovalTimeOut(Router& router) {
  beginRemoval(router);
  router.advance(190);
}

void closeUponRemoval(Router& router) {
  beginRemoval(router);
  router.close();
  router.open();
  router.settle();
}

void cancelAdd(Router& router) {
  router.assoc().addDevZigbeeZwave();
  router.assoc().sendCancelTo(cancel_both);
}

const struct Attack {
  const char* name;
  Router::Role role;
  void (*prepare)(Router&);
  void (*attack)(Router&);
  const char* line;  // that strict mode logs
} kAttacks[] = {
    {"NestAnswerClosesTheWebServer", &TembraAssociation::webServerAssocInit, [](Router&) {},
     [](Router& router) { router.from("127.255.255.251", 5555).send(nestAnswer(100)); }, "stranger's datagram"},
    {"HueAnswerClosesTheWebServer", &TembraAssociation::webServerAssocInit, [](Router&) {},
     [](Router& router) { router.from("127.255.255.252", 5555).send(hueAnswer(1)); }, "stranger's datagram"},
    {"ZwaveDuringARemoval", &TembraAssociation::LCDAssocInit, &beginRemoval, &zwaveFromAnotherPort,
     "stranger's datagram"},
    {"ZigbeeDuringARemoval", &TembraAssociation::LCDAssocInit, &beginRemoval, &zigbeeFromAnotherPort,
     "stranger's datagram"},
    {"ZwaveAfterACancelledRemoval", &TembraAssociation::LCDAssocInit, &cancelRemoval, &zwaveFromAnotherPort,
     "stranger's datagram"},
    {"ZwaveAfterATimedOutRemoval", &TembraAssociation::LCDAssocInit, &letRemovalTimeOut, &zwaveFromAnotherPort,
     "stranger's datagram"},
    {"ADeviceThatDoesNotExist", &TembraAssociation::LCDAssocInit,
     [](Router& router) { router.assoc().addDevZigbeeZwave(); }, &addFromAnotherPort, "stranger's datagram"},
    {"PartOfAnAddress", &TembraAssociation::LCDAssocInit, &beginRemoval,
     [](Router& router) { router.from("127.255.255.25", 8888).send(Node(kLock)); }, "stranger's datagram"},
    {"ShorterPartOfAnAddress", &TembraAssociation::LCDAssocInit, &beginRemoval,
     [](Router& router) { router.from("127.255.255.2", 8888).send(Node(kLock)); }, "stranger's datagram"},
    // The daemon does not run, and the attacker has its port.
    {"ZwavesOwnPortAfterACancelledRemoval", &TembraAssociation::LCDAssocInit, &cancelRemoval,
     [](Router& router) { router.zwave().send(Node(kLock)); }, "late answer"},
    {"ZwavesOwnPortAfterATimedOutRemoval", &TembraAssociation::LCDAssocInit, &letRemovalTimeOut,
     [](Router& router) { router.zwave().send(Node(kLock)); }, "late answer"},
    {"ZwavesOwnPortAfterARemovalThatWasClosedUpon", &TembraAssociation::LCDAssocInit, &closeUponRemoval,
     [](Router& router) { router.zwave().send(Node(kLock)); }, "late answer"},
    {"ZigbeesOwnPortAfterACancelledRemoval", &TembraAssociation::LCDAssocInit, &cancelRemoval,
     [](Router& router) { router.zigbee().send(ZigbeeDevice(kDoor).status(2)); }, "late answer"},
    {"ZwavesOwnPortAfterACancelledAdd", &TembraAssociation::LCDAssocInit, &cancelAdd,
     [](Router& router) { router.zwave().send(Node(77)); }, "late answer"},
    {"ZigbeesOwnPortAfterACancelledAdd", &TembraAssociation::LCDAssocInit, &cancelAdd,
     [](Router& router) { router.zigbee().send(ZigbeeDevice(kDoor).status(1)); }, "late answer"},
};

template <typename Object>
void append(Bytes& bytes, const Object& object) {
  const auto* first = reinterpret_cast<const unsigned char*>(&object);
  bytes.insert(bytes.end(), first, first + sizeof object);
}

// All that a front end can read, and the database.
Bytes library(Router& router) {
  Bytes bytes = router.database().file();
  append(bytes, router.assoc());
  append(bytes, idle);
  append(bytes, cmdtype);
  append(bytes, tempStr);
  append(bytes, DevId);
  append(bytes, BasicFlag);
  append(bytes, MultilevelFlag);
  append(bytes, SensorBinaryFlag);
  append(bytes, ZwAcExtFlag);
  append(bytes, local_meshID);
  append(bytes, assoc_meshID);
  append(bytes, username1);
  append(bytes, buff);
  return bytes;
}

class Spoofers : public testing::TestWithParam<int> {
 protected:
  const Attack& attack = kAttacks[GetParam()];
  Router router;

  void SetUp() override {
    router.database().put(Device(20, "Front door lock").zwave(kLock));
    router.database().put(Device(21, "Back door").zigbee(kDoor));
    router.connect(attack.role);
    attack.prepare(router);
    router.forget();
  }
};

}  // namespace

TEST_P(Spoofers, DoHarmWithoutStrictMode) {
  attack.attack(router);
  EXPECT_FALSE(router.takeEvents().empty());
}

TEST_P(Spoofers, ChangeNothingInStrictMode) {
  tembra_set_strict(1);
  const Bytes before = library(router);
  attack.attack(router);
  EXPECT_EQ(library(router), before);
  EXPECT_EQ(router.takeTrace(), std::string("log 2 libTembraAssoc:strict mode: dropped a ") + attack.line + "\n");
}

INSTANTIATE_TEST_SUITE_P(Each, Spoofers, testing::Range(0, static_cast<int>(std::size(kAttacks))),
                         [](const auto& info) { return kAttacks[info.param].name; });
