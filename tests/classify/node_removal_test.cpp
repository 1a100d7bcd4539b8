// Telling the HA server which device to drop.
#include <depot.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string>
#include <vector>

#include "kit/router.h"

using kit::Bytes;
using kit::Call;
using kit::Datagram;
using kit::Device;
using kit::lines;
using kit::Router;

namespace {

// The service, connected, with a working copy whose every byte is 'w' and a received node.
TembraAssociation& connectedWith(Router& router, unsigned char node) {
  TembraAssociation& assoc = router.connect();
  std::memset(&assoc.zwNodeWork, 'w', sizeof assoc.zwNodeWork);
  assoc.zwNodeRx.nodeId = node;
  return assoc;
}

Bytes noticeFor(unsigned char node) {
  Bytes notice(4100, 0);
  notice[0] = 2;
  std::fill(notice.begin() + 4, notice.begin() + 4 + 1036, 'w');
  notice[4] = node;
  notice[4 + 600] = 2;
  notice[4 + 601] = notice[4 + 602] = notice[4 + 603] = 0;
  notice[4 + 972] = 254;
  return notice;
}

}  // namespace

TEST(NodeRemovalTest, OneRecordIsOneNotice) {
  Router router;
  router.database().put(Device(3, "Lamp").zwave(261)).put(Device(4, "Door").zwave(6)).put(Device(7, "Hue").ip());
  TembraAssociation& assoc = connectedWith(router, 5);
  EXPECT_EQ(assoc.ZW_removeNode(), 0);
  const std::vector<Datagram> sends = router.takeSends();
  ASSERT_EQ(sends.size(), 1U);
  EXPECT_EQ(sends[0].destination, "ha");
  EXPECT_EQ(sends[0].bytes, noticeFor(5));
  EXPECT_EQ(router.ha().receive(), noticeFor(5));
  EXPECT_EQ(assoc.removedId, 3);
  EXPECT_STREQ(assoc.removedName, "Lamp");
}

TEST(NodeRemovalTest, TheNoticeIsSentWhileTheDatabaseIsOpen) {
  Router router;
  router.database().put(Device(3, "Lamp").zwave(261));
  TembraAssociation& assoc = connectedWith(router, 5);
  assoc.zwNodeWork = {};
  router.watch(kit::kWatchDatabase);
  assoc.ZW_removeNode();
  EXPECT_EQ(router.takeTrace(), lines({
                                    "dpopen /tmp/ddb 6 -1",
                                    "log 0 libTembraAssoc:Removing Zwave device 261",
                                    "send ha 4100 zwave node 5 kind 2 type 0 mark 254 name \"\" location \"\"",
                                    "log 0 libTembraAssoc:device removed sending success to haserver",
                                    "dpclose",
                                }));
}

TEST(NodeRemovalTest, AnUnknownNodeIsNobodysBusiness) {
  Router router;
  router.database().nextId("4").put(Device(3, "Lamp").zwave(6)).put(Device(4, "Bulb").zigbee(5));
  TembraAssociation& assoc = connectedWith(router, 5);
  const ZwNodeInfo work = assoc.zwNodeWork;
  EXPECT_EQ(assoc.ZW_removeNode(), 0);
  EXPECT_EQ(router.takeTrace(), "");
  EXPECT_EQ(std::memcmp(&assoc.zwNodeWork, &work, sizeof work), 0);
}

TEST(NodeRemovalTest, EachRecordOfTheNodeIsANotice) {
  Router router;
  router.database().put(Device(3, "A").zwave(5)).put(Device(4, "B").zwave(6)).put(Device(9, "C").zwave(0x0105));
  router.database().put(Device(8, "D").zwave(5));
  TembraAssociation& assoc = connectedWith(router, 5);
  EXPECT_EQ(assoc.ZW_removeNode(), 0);
  std::vector<Bytes> notices;
  for (const Datagram& datagram : router.takeSends()) notices.push_back(datagram.bytes);
  EXPECT_EQ(notices, std::vector<Bytes>(3, noticeFor(5)));
  EXPECT_EQ(assoc.removedId, 8);
  EXPECT_STREQ(assoc.removedName, "D");
}

TEST(NodeRemovalTest, NothingIsSentForRecordsBehindABrokenOne) {
  Router router;
  router.database().put(Device(3, "A").zwave(5)).put(Device(4, "B").zwave(5)).put(Device(9, "C").zwave(5));
  router.database().breakRecord("4");
  TembraAssociation& assoc = connectedWith(router, 5);
  EXPECT_EQ(assoc.ZW_removeNode(), 0);
  EXPECT_EQ(router.takeSends().size(), 1U);
  EXPECT_EQ(assoc.removedId, 3);
}

TEST(NodeRemovalTest, AFailedSendIsSaidAndNotRepeated) {
  Router router;
  router.database().put(Device(3, "A").zwave(5)).put(Device(4, "B").zwave(5));
  TembraAssociation& assoc = connectedWith(router, 5);
  assoc.zwNodeWork = {};
  router.fail(Call::kSendto, EPERM);
  EXPECT_EQ(assoc.ZW_removeNode(), 0);
  EXPECT_EQ(router.takeTrace(), lines({
                                    "log 0 libTembraAssoc:Removing Zwave device 5",
                                    "send ha 4100 zwave node 5 kind 2 type 0 mark 254 name \"\" location \"\" -> EPERM",
                                    "stderr sendto error: Operation not permitted",
                                    "log 2 libTembraAssoc:sending failed to haserver",
                                    "log 0 libTembraAssoc:Removing Zwave device 5",
                                    "send ha 4100 zwave node 5 kind 2 type 0 mark 254 name \"\" location \"\"",
                                    "log 0 libTembraAssoc:device removed sending success to haserver",
                                }));
}

TEST(RemoveAllTest, SaysSoAndSendsTheText) {
  Router router;
  router.connect().removeAllDevices();
  EXPECT_EQ(router.takeTrace(), lines({
                                    "log 3 libTembraAssoc:Sending removeAllDevices to haserver",
                                    "send ha 4100 \"removeAllDevices\"",
                                }));
  const std::string text = "removeAllDevices";
  Bytes expected(4100, 0);
  std::copy(text.begin(), text.end(), expected.begin() + 4);
  EXPECT_EQ(router.takeSends().at(0).bytes, expected);
  EXPECT_EQ(router.ha().receive(), expected);
}

TEST(RemoveAllTest, CarriesNothingOfAnEarlierNotice) {
  Router router;
  router.database().put(Device(3, "Lamp").zwave(5));
  TembraAssociation& assoc = connectedWith(router, 5);
  assoc.ZW_removeNode();
  router.forget();
  assoc.removeAllDevices();
  const Bytes bytes = router.takeSends().at(0).bytes;
  EXPECT_EQ(std::count(bytes.begin(), bytes.end(), 0), 4100 - 16);
}

TEST(RemoveAllTest, AFailedSendIsNotSaid) {
  Router router;
  TembraAssociation& assoc = router.connect();
  router.fail(Call::kSendto, EPERM);
  assoc.removeAllDevices();
  EXPECT_EQ(router.takeTrace(), lines({
                                    "log 3 libTembraAssoc:Sending removeAllDevices to haserver",
                                    "send ha 4100 \"removeAllDevices\" -> EPERM",
                                    "stderr sendto error: Operation not permitted",
                                }));
}
