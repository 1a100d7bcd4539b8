// An add that the Z-Wave server answers, step by step.

#include "nodes.h"
#include "stories.h"

using kit::Device;
using kit::lines;
using kit::Node;

namespace {

using ZwaveAdd = Stories;

const Node kSwitchWithItsClass = Node(5).classes({0x25}).generic(0x10).specific(1);

}  // namespace

TEST_F(ZwaveAdd, BeginsOnBothRadios) {
  add();
  EXPECT_EQ(story.take(), lines({
                              "log 0 libTembraAssoc:inside addDevZigbeeZwave",
                              "send zigbee 320 \"option button1\" @180 \"IAS\"",
                              "send zwave 236 op 1 cmd 1",
                              "  state 1 idle 0 last 0 cancel 3 radio 0 cmdtype AddDevice",
                          }));
}

TEST_F(ZwaveAdd, TheFirstAnswerTakesTheOperationOver) {
  add();
  EXPECT_EQ(answer(Node(5)), lines({
                                 "log 0 libTembraAssoc:Received Packet from Z-wave",
                                 "log 0 ................. ASSOC ...................",
                                 "log 0 libTembraAssoc:Sending cancel command to zigbee_server",
                                 "  state 1 idle 0 last 0 cancel 3 radio 2 cmdtype AddDevice",
                                 "send zigbee 320 \"network pjoin 0\" @180 \"cancel\"",
                                 "event 3 source 2",
                                 "  state 4 idle 0 last 3 cancel 2 radio 2 cmdtype AddingSensor",
                                 "log 0 libTembraAssoc:Adding sensor (Z-wave)",
                                 "log 0 libTembraAssoc:timeout set to 60 sec...",
                                 "timeout 60",
                             }));
}

TEST_F(ZwaveAdd, TheServersFailureEndsIt) {
  add();
  assoc.lastEventCode = 21;
  EXPECT_EQ(answer(Node(255)), lines({
                                   "log 0 libTembraAssoc:Received Packet from Z-wave",
                                   "log 0 ................. ASSOC ...................",
                                   "log 0 libTembraAssoc:Sending cancel command to zigbee_server",
                                   "  state 1 idle 0 last 21 cancel 3 radio 2 cmdtype AddDevice",
                                   "send zigbee 320 \"network pjoin 0\" @180 \"cancel\"",
                                   "event 9 source 2",
                                   "  state 1 idle 0 last 0 cancel 2 radio 2 cmdtype AddDevice",
                                   "log 1 libTembraAssoc:Association failed (Z-wave)",
                                   "  state 0 idle 1 last 0 cancel 2 radio 2 cmdtype AddDevice",
                                   "timeout 180",
                               }));
}

TEST_F(ZwaveAdd, AnUnknownNodeIsAskedForItsInformation) {
  addJoined(5);
  EXPECT_EQ(answer(Node(5)), lines({
                                 "log 0 libTembraAssoc:Received Packet from Z-wave",
                                 "log 0 ................. ZW_ASSOC ...................",
                                 "event 5 source 2",
                                 "  state 5 idle 0 last 5 cancel 2 radio 2 cmdtype GettingInfo",
                                 "log 0 libTembraAssoc:Getting sensor info (Z-wave)",
                                 "log 0 libTembraAssoc:ZW_ASSOC_QUERY:timeout set to 180 secs",
                                 "timeout 180",
                             }));
}

TEST_F(ZwaveAdd, AKnownNodeEndsIt) {
  router.database().put(Device(12, "Lamp").zwave(5));
  addJoined(5);
  EXPECT_EQ(answer(Node(5)), lines({
                                 "log 0 libTembraAssoc:Received Packet from Z-wave",
                                 "log 0 ................. ZW_ASSOC ...................",
                                 "log 0 libTembraAssoc:Removing Zwave device 5",
                                 "event 4 source 2",
                                 "  state 4 idle 0 last 0 cancel 2 radio 2 cmdtype AddingSensor",
                                 "log 0 libTembraAssoc:Z-wave sensor already joined",
                                 "  state 0 idle 1 last 0 cancel 2 radio 2 cmdtype AddingSensor",
                                 "timeout 60",
                             }));
  EXPECT_STREQ(assoc.removedName, "Lamp");
  EXPECT_EQ(assoc.removedId, 12);
}

TEST_F(ZwaveAdd, NoNodeAndFailureEndItWhenTheIdentityIsExpected) {
  for (const Byte node : {Byte{0}, Byte{255}}) {
    addJoined(5);
    EXPECT_EQ(answer(Node(node)), lines({
                                      "log 0 libTembraAssoc:Received Packet from Z-wave",
                                      "log 0 ................. ZW_ASSOC ...................",
                                      "event 9 source 2",
                                      "  state 4 idle 0 last 0 cancel 2 radio 2 cmdtype AddingSensor",
                                      "log 1 libTembraAssoc:Association failed (Z-wave)",
                                      "  state 0 idle 1 last 0 cancel 2 radio 2 cmdtype AddingSensor",
                                      "timeout 60",
                                  }));
  }
}

TEST_F(ZwaveAdd, ADeviceWithSubTypesIsOfferedForAChoice) {
  router.database().nextId("17");
  addIdentified(5);
  EXPECT_EQ(answer(kSwitchWithItsClass),
            lines({
                "log 0 libTembraAssoc:Received Packet from Z-wave",
                "log 0 ................. ZW_ASSOC_QUERY ...................",
                "log 0 node 5 Supported Command Classes:0x25 ",
                "log 0 libTembraAssoc:Generic:zw_Binary_Switch , Specific:BS_Binary_Power_Switch",
                "log 0 libTembraAssoc:Device Basic Type:0x04, Generic Type:0x10, Specific Type:0x01,Nodeid:5",
                "log 0 libTembraAssoc:zw_createDevice is successful (Z-wave)",
                "event 6 source 2",
                "  state 5 idle 0 last 6 cancel 2 radio 2 cmdtype GettingInfo",
                "timeout 180",
                "  state 0 idle 0 last 6 cancel 2 radio 2 cmdtype SelectDeviceType",
            }));
}

TEST_F(ZwaveAdd, ADeviceWithoutSubTypesIsNamedNext) {
  router.database().nextId("17");
  addIdentified(5);
  EXPECT_EQ(answer(kGateway),
            lines({
                "log 0 libTembraAssoc:Received Packet from Z-wave",
                "log 0 ................. ZW_ASSOC_QUERY ...................",
                "log 0 node 5 Supported Command Classes:",
                "log 0 libTembraAssoc:Generic:zw_Static_Controller_v2 , Specific:SC_Gateway",
                "log 0 libTembraAssoc:Device Basic Type:0x04, Generic Type:0x02, Specific Type:0x07,Nodeid:5",
                "log 0 libTembraAssoc:zw_createDevice is successful (Z-wave)",
                "event 7 source 2",
                "  state 5 idle 0 last 7 cancel 2 radio 2 cmdtype GettingInfo",
                "timeout 180",
                "  state 0 idle 0 last 7 cancel 2 radio 2 cmdtype EditNameLocation",
            }));
  EXPECT_STREQ(assoc.devLocation, "Default");
}

TEST_F(ZwaveAdd, ANodeWithoutBasicClassEndsIt) {
  addIdentified(5);
  EXPECT_EQ(answer(Node(5).basic(0)), lines({
                                          "log 0 libTembraAssoc:Received Packet from Z-wave",
                                          "log 0 ................. ZW_ASSOC_QUERY ...................",
                                          "log 0 node 5 Supported Command Classes:",
                                          "log 2 libTembraAssoc:BasicType is 0,so skipping Device addition",
                                          "log 1 libTembraAssoc:zw_createDevice is unsuccessful (Z-wave)",
                                          "event 9 source 2",
                                          "  state 5 idle 0 last 0 cancel 2 radio 2 cmdtype GettingInfo",
                                          "timeout 180",
                                          "  state 0 idle 1 last 0 cancel 2 radio 2 cmdtype GettingInfo",
                                      }));
}

// A cancel leaves the state, and an answer on its way is handled in it; each step then writes what it always writes.
TEST_F(ZwaveAdd, GoesOnWhenTheAnswerCrossesACancel) {
  add();
  assoc.sendCancelTo(cancel_both);
  EXPECT_EQ(answer(Node(5)), lines({
                                 "log 0 libTembraAssoc:Received Packet from Z-wave",
                                 "log 0 ................. ASSOC ...................",
                                 "log 0 libTembraAssoc:Sending cancel command to zigbee_server",
                                 "  state 1 idle 1 last 0 cancel 3 radio 2 cmdtype AddDevice",
                                 "send zigbee 320 \"network pjoin 0\" @180 \"cancel\"",
                                 "event 3 source 2",
                                 "  state 4 idle 1 last 3 cancel 2 radio 2 cmdtype AddingSensor",
                                 "log 0 libTembraAssoc:Adding sensor (Z-wave)",
                                 "log 0 libTembraAssoc:timeout set to 60 sec...",
                                 "  state 4 idle 0 last 3 cancel 2 radio 2 cmdtype AddingSensor",
                                 "timeout 60",
                             }));
  assoc.sendCancelTo(cancel_both);
  EXPECT_EQ(answer(Node(5)), lines({
                                 "log 0 libTembraAssoc:Received Packet from Z-wave",
                                 "log 0 ................. ZW_ASSOC ...................",
                                 "event 5 source 2",
                                 "  state 5 idle 1 last 5 cancel 2 radio 2 cmdtype GettingInfo",
                                 "log 0 libTembraAssoc:Getting sensor info (Z-wave)",
                                 "log 0 libTembraAssoc:ZW_ASSOC_QUERY:timeout set to 180 secs",
                                 "timeout 180",
                             }));
}
