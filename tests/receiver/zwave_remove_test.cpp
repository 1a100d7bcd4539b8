// A removal that the Z-Wave server answers, step by step.
#include <cerrno>
#include <cstring>

#include "stories.h"

using kit::Call;
using kit::Device;
using kit::lines;
using kit::Node;

namespace {

class ZwaveRemove : public Stories {
 protected:
  void remove() { assoc.removeDevZigbeeZwave(); }
};

}  // namespace

TEST_F(ZwaveRemove, BeginsOnBothRadios) {
  remove();
  EXPECT_EQ(story.take(), lines({
                              "send zigbee 320 \" \" @180 \"remove\"",
                              "send zwave 236 op 1 cmd 4",
                              "  state 2 idle 0 last 0 cancel 3 radio 0 cmdtype RemoveDevice",
                          }));
}

// The look-up and the notice scan the database once each.
TEST_F(ZwaveRemove, AKnownNodeIsDropped) {
  router.database().put(Device(12, "Lamp").zwave(5));
  remove();
  EXPECT_EQ(answer(Node(5)), lines({
                                 "log 0 libTembraAssoc:Received Packet from Z-wave",
                                 "log 0 ................. DEASSOC ...................",
                                 "log 0 libTembraAssoc:Sending cancel command to zigbee_server",
                                 "  state 2 idle 0 last 0 cancel 3 radio 2 cmdtype RemoveDevice",
                                 "send zigbee 320 \"network pjoin 0\" @180 \"cancel\"",
                                 "log 0 libTembraAssoc:Removing Zwave device 5",
                                 "  state 2 idle 0 last 0 cancel 2 radio 2 cmdtype RemoveDevice",
                                 "log 0 libTembraAssoc:Removing Zwave device 5",
                                 "  state 6 idle 0 last 0 cancel 2 radio 2 cmdtype RemoveDevice",
                                 "send ha 4100 zwave node 5 kind 2 type 0 mark 254 name \"\" location \"\"",
                                 "log 0 libTembraAssoc:device removed sending success to haserver",
                                 "event 11 source 2",
                                 "log 0 libTembraAssoc:Lamp is Removing (Z-wave)",
                                 "log 0 libTembraAssoc:timeout set to 20 sec",
                                 "timeout 20",
                             }));
}

TEST_F(ZwaveRemove, TheClosingAnswerEndsIt) {
  router.database().put(Device(12, "Lamp").zwave(5));
  remove();
  answer(Node(5));
  EXPECT_EQ(answer(Node(0)), lines({
                                 "log 0 libTembraAssoc:Received Packet from Z-wave",
                                 "log 0 libTembraAssoc: Sensor Removed (Z-wave)",
                                 "timeout 20",
                                 "  state 0 idle 1 last 0 cancel 0 radio 2 cmdtype RemoveDevice",
                             }));
}

TEST_F(ZwaveRemove, AnUnknownNodeIsWaitedForAllTheSame) {
  router.database().put(Device(12, "Lamp").zwave(5));
  remove();
  EXPECT_EQ(answer(Node(77)), lines({
                                  "log 0 libTembraAssoc:Received Packet from Z-wave",
                                  "log 0 ................. DEASSOC ...................",
                                  "log 0 libTembraAssoc:Sending cancel command to zigbee_server",
                                  "  state 2 idle 0 last 0 cancel 3 radio 2 cmdtype RemoveDevice",
                                  "send zigbee 320 \"network pjoin 0\" @180 \"cancel\"",
                                  "event 12 source 2",
                                  "  state 2 idle 0 last 0 cancel 2 radio 2 cmdtype RemoveDevice",
                                  "log 0 libTembraAssoc:222 Unknown Sensor Removed (Z-wave) and Node:77",
                                  "  state 6 idle 0 last 0 cancel 2 radio 2 cmdtype RemoveDevice",
                                  "log 0 libTembraAssoc:timeout set to 20 sec",
                                  "timeout 20",
                              }));
}

// The node byte comes before the database here, so records of these numbers do not count.
TEST_F(ZwaveRemove, NoNodeAndFailureEndItAtOnce) {
  router.database().put(Device(1, "Lamp").zwave(0x200)).put(Device(2, "Door").zwave(0x1FF));
  for (const Byte node : {Byte{0}, Byte{255}}) {
    remove();
    assoc.lastEventCode = 3;
    const std::string text =
        "log 0 libTembraAssoc:111 Unknown Sensor Removed (Z-wave) and Node:" + std::to_string(node);
    EXPECT_EQ(answer(Node(node)), lines({
                                      "log 0 libTembraAssoc:Received Packet from Z-wave",
                                      "log 0 ................. DEASSOC ...................",
                                      "log 0 libTembraAssoc:Sending cancel command to zigbee_server",
                                      "  state 2 idle 0 last 3 cancel 3 radio 2 cmdtype RemoveDevice",
                                      "send zigbee 320 \"network pjoin 0\" @180 \"cancel\"",
                                      "event 12 source 2",
                                      "  state 2 idle 0 last 0 cancel 2 radio 2 cmdtype RemoveDevice",
                                      text,
                                      "  state 0 idle 0 last 0 cancel 2 radio 2 cmdtype RemoveDevice",
                                      "timeout 180",
                                      "  state 0 idle 1 last 0 cancel 2 radio 2 cmdtype RemoveDevice",
                                  }));
    EXPECT_EQ("log 0 " + std::string(tempStr), text);
    assoc.activeRadio = 0;
  }
}

// A cancel from outside sets `idle`; the answer that crosses it clears it again, after the event and its first line.
TEST_F(ZwaveRemove, GoesOnWhenTheAnswerCrossesACancel) {
  const std::string stateBefore = "idle 1 last 0 cancel 2 radio 2 cmdtype Something";
  const std::string end = lines({"log 0 libTembraAssoc:timeout set to 20 sec",
                                 "  state 6 idle 0 last 0 cancel 2 radio 2 cmdtype RemoveDevice", "timeout 20"});
  const struct {
    Byte node;
    std::string end;
  } kRows[] = {
      {5, lines({"event 11 source 2", "log 0 libTembraAssoc:Lamp is Removing (Z-wave)"}) + end},
      {77, lines({"event 12 source 2", "  state 2 " + stateBefore,
                  "log 0 libTembraAssoc:222 Unknown Sensor Removed (Z-wave) and Node:77", "  state 6 " + stateBefore}) +
               end},
  };
  router.database().put(Device(12, "Lamp").zwave(5));
  for (const auto& row : kRows) {
    remove();
    assoc.sendCancelTo(cancel_both);
    std::strcpy(cmdtype, "Something");
    const std::string told = answer(Node(row.node));
    EXPECT_EQ(told.substr(told.find("event ")), row.end);
  }
}

TEST_F(ZwaveRemove, ANoticeThatCannotBeSentIsAnError) {
  router.database().put(Device(12, "Lamp").zwave(5));
  remove();
  router.fail(Call::kSendto, EPERM, 1, 1);  // not the cancel command
  const std::string told = answer(Node(5));
  EXPECT_NE(told.find("stderr sendto error: Operation not permitted\n"
                      "log 2 libTembraAssoc:sending failed to haserver\n"
                      "event 11 source 2\n"),
            std::string::npos)
      << told;
}
