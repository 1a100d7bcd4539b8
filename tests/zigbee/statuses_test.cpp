// Every status byte in every state: what is done, what is said, what follows.
#include <gtest/gtest.h>

#include <cstring>

#include "kit/router.h"

using kit::Device;
using kit::lines;
using kit::Router;
using kit::ZigbeeDevice;

namespace {

constexpr unsigned short kKnown = 0x1234, kUnknown = 0x4321;
constexpr char kCancelling[] = "log 0 libTembraAssoc:Sending cancel command to zwave_server";
constexpr char kCancel[] = "send zwave 236 op 4 cmd 0";

// What a status leads to. The time-out is that of the wait that follows, 0: the one before.
struct Effect {
  std::string trace;
  std::string state;
  int timeout = 0;
};

std::string untouched(int state) {
  return "state " + std::to_string(state) + " idle 0 last 21 cancel 3 radio 0 cmdtype AddDevice";
}

Effect failed() {
  return {lines({"log 1 libTembraAssoc:Association failed (Zigbee)", "event 9 source 1"}),
          "state 0 idle 1 last 0 cancel 3 radio 0 cmdtype AddDevice"};
}

Effect whileAdding(int status) {
  switch (status) {
    case 1:
      return {lines({kCancelling, kCancel, "log 0 libTembraAssoc: Device got found (Zigbee)", "event 3 source 1",
                     "log 0 libTembraAssoc:timeout set to 60 sec"}),
              "state 1 idle 0 last 3 cancel 1 radio 1 cmdtype AddingSensor", 60};
    case 2:
    case 11:
      return failed();
    case 3:
      return {"", untouched(1)};
    case 6:
      return {lines({"log 0 libTembraAssoc:Getting Sensor info (Zigbee)", "event 5 source 1",
                     "log 0 libTembraAssoc:timeout set to 180 sec"}),
              "state 1 idle 0 last 5 cancel 3 radio 0 cmdtype GettingInfo", 180};
    case 10:
      return {lines({"log 0 libTembraAssoc:collecting info of zigbee device",
                     "log 0 libTembraAssoc:No. of clusters found:0 and indexes:0 zonetype:0", "event 7 source 1",
                     "log 0 libTembraAssoc:Sensor got Associated 41 name GenericDevice #41 (Zigbee)"}),
              "state 8 idle 0 last 7 cancel 3 radio 0 cmdtype EditNameLocation"};
    default:
      return {"", untouched(0)};
  }
}

Effect unknownRemoved() {
  return {lines({kCancelling, kCancel, "log 0 libTembraAssoc:Unknown Sensor removed (Zigbee)", "event 12 source 1"}),
          "state 0 idle 1 last 0 cancel 0 radio 1 cmdtype AddDevice"};
}

Effect whileRemoving(int status, bool known) {
  Effect effect{"", untouched(2)};
  if (status == 12 || (status == 2 && !known)) effect = unknownRemoved();
  if (!known) return effect;
  if (status == 2) {
    effect = {lines({kCancelling, kCancel, R"(send ha 4100 zigbee address 4660 message 2 type 0 name "" location "")",
                     "log 0 libTembraAssoc:Sensor name Lamp is removed (Zigbee)", "event 11 source 1"}),
              "state 0 idle 1 last 0 cancel 0 radio 1 cmdtype AddDevice"};
  }
  effect.trace.insert(0, "log 0 libTembraAssoc:Removing zigbee device 0x1234\n");
  return effect;
}

Effect expected(int state, int status, bool known) {
  if (state == ASSOC) return whileAdding(status);
  if (state == DEASSOC) return whileRemoving(status, known);
  return {"", untouched(state)};
}

// Bytes that nobody looks at are noise, so that the copy of the datagram can be told.
ZigbeeDevice answer(unsigned short address, int status) {
  ZigbeeDevice device = ZigbeeDevice(address).status(status);
  std::memset(device.info().at2, status + 1, sizeof device.info().at2);
  std::memset(device.info().at242, status, sizeof device.info().at242);
  return device;
}

ZbDeviceInfo stored(const ZigbeeDevice& sent, int state, int status, bool known) {
  ZbDeviceInfo record = sent.info();
  if (state == DEASSOC && !known) record.msgCode = 12;
  if (state == ASSOC && status == 10) {
    record.devType = 60;
    record.indexes[0].type = 255;
  }
  return record;
}

class Statuses {
 public:
  Statuses() {
    router_.connect();
    router_.database().nextId("41").put(Device(7, "Lamp").zigbee(kKnown));
    router_.watch(kit::kWatchTimeouts);
  }

  void check(int state, int status, bool known) {
    begin(state);
    const ZigbeeDevice sent = answer(known ? kKnown : kUnknown, status);
    router_.zigbee().send(sent);
    const Effect effect = expected(state, status, known);
    if (effect.timeout != 0) timeout_ = effect.timeout;
    const std::string when = "status " + std::to_string(status) + " in state " + std::to_string(state);
    EXPECT_EQ(router_.takeTrace(), effect.trace + "timeout " + std::to_string(timeout_) + "\n") << when;
    EXPECT_EQ(router_.state(), effect.state) << when;
    const ZbDeviceInfo record = stored(sent, state, status, known);
    EXPECT_EQ(std::memcmp(&router_.assoc().zbDevice, &record, sizeof record), 0) << when;
    EXPECT_EQ(assoc_meshID, 3) << when;
    ++checked;
  }

  int checked = 0;

 private:
  void begin(int state) {
    TembraAssociation& assoc = router_.assoc();
    assoc.assocState = state;
    assoc.lastEventCode = 21;
    assoc.cancelTarget = 3;
    assoc.activeRadio = 0;
    std::strcpy(cmdtype, "AddDevice");
    idle = 0;
    assoc_meshID = -1;
    router_.forget();
  }

  Router router_;
  int timeout_ = 180;
};

}  // namespace

TEST(StatusesTest, EveryStatusInEveryState) {
  Statuses statuses;
  for (const int state : {0, 1, 2, 3, 4, 5, 6, 7, 8, -1, 9}) {
    for (int status = 0; status <= 255; ++status) {
      statuses.check(state, status, true);
      statuses.check(state, status, false);
    }
  }
  EXPECT_EQ(statuses.checked, 11 * 256 * 2);
}
