// Handing a Z-Wave node over to the HA server.
#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <numeric>
#include <string>

#include "kit/router_test.h"
#include "texts.h"

using kit::Bytes;
using kit::Call;
using kit::lines;
using kit::Router;

namespace {

using ZwaveDoneTest = kit::ConnectedTest;

// A node whose every byte says where it stands, of Z-Wave kind.
void fill(ZwNodeInfo& node) {
  auto* bytes = reinterpret_cast<unsigned char*>(&node);
  std::iota(bytes, bytes + sizeof node, static_cast<unsigned char>(1));
  node.deviceKind = DEVICE_ZWAVE;
}

Bytes noticeOf(const ZwNodeInfo& node) {
  HaNotice notice{};
  notice.recordKind = 2;
  std::memcpy(notice.record, &node, sizeof node);
  const auto* first = reinterpret_cast<const unsigned char*>(&notice);
  return {first, first + sizeof notice};
}

void raiseFlags() { BasicFlag = MultilevelFlag = SensorBinaryFlag = ZwAcExtFlag = 1; }

int sumOfFlags() { return BasicFlag + MultilevelFlag + SensorBinaryFlag + ZwAcExtFlag; }

std::string logOf(const std::string& name, const std::string& location) {
  return "log 0 libTembraAssoc:Name:" + name + " Location:" + location;
}

}  // namespace

TEST_F(ZwaveDoneTest, SendsTheNodeWithItsTexts) {
  fill(assoc.zwNodeWork);
  ZwNodeInfo expected = assoc.zwNodeWork;
  std::strcpy(expected.name, "Lamp");  // bytes behind the NUL stay
  std::strcpy(expected.location, "Hall");
  setTexts(assoc, "Lamp", "Hall");
  router.forget();
  EXPECT_EQ(assoc.addingDone(), 0);
  const auto sends = router.takeSends();
  ASSERT_EQ(sends.size(), 1U);
  EXPECT_EQ(sends[0].destination, "ha");
  EXPECT_EQ(sends[0].bytes, noticeOf(expected));
}

TEST_F(ZwaveDoneTest, SaysSoBeforeAndAfter) {
  assoc.zwNodeWork.deviceKind = DEVICE_ZWAVE;
  assoc.zwNodeWork.nodeId = 5;
  assoc.zwNodeWork.finalType = 45;
  assoc.zwNodeWork.requestMark = 255;
  setTexts(assoc, "100%s lamp%n", "Hall");
  router.forget();
  EXPECT_EQ(assoc.addingDone(), 0);
  EXPECT_EQ(router.takeTrace(),
            lines({
                "log 0 libTembraAssoc:inside addingDone",
                logOf("100%s lamp%n", "Hall"),
                R"(send ha 4100 zwave node 5 kind 2 type 45 mark 255 name "100%s lamp%n" location "Hall")",
                "log 0 libTembraAssoc:Sending Packet to Haserver Success",
            }));
}

TEST_F(ZwaveDoneTest, ForgetsTheNodeAndItsFlagsAndNothingElse) {
  fill(assoc.zwNodeWork);
  fill(assoc.zwNodeRx);
  const ZwNodeInfo received = assoc.zwNodeRx;
  setTexts(assoc, "Lamp", "Hall");
  assoc.devType = 45;
  assoc.classifiedType = 60;
  DevId = 8;
  raiseFlags();
  assoc.addingDone();
  const ZwNodeInfo empty{};
  EXPECT_EQ(std::memcmp(&assoc.zwNodeWork, &empty, sizeof empty), 0);
  EXPECT_EQ(sumOfFlags(), 0);
  EXPECT_EQ(std::memcmp(&assoc.zwNodeRx, &received, sizeof received), 0);
  EXPECT_STREQ(assoc.devName, "Lamp");
  EXPECT_STREQ(assoc.devLocation, "Hall");
  EXPECT_EQ(assoc.devType, 45);
  EXPECT_EQ(assoc.classifiedType, 60);
  EXPECT_EQ(DevId, 8);
}

TEST_F(ZwaveDoneTest, AFailureToSendIsSaidAndTheNodeForgottenAllTheSame) {
  assoc.zwNodeWork.deviceKind = DEVICE_ZWAVE;
  raiseFlags();
  router.fail(Call::kSendto, EPERM);
  EXPECT_EQ(assoc.addingDone(), -1);
  EXPECT_EQ(router.takeTrace(), lines({
                                    "log 0 libTembraAssoc:inside addingDone",
                                    logOf("", ""),
                                    R"(send ha 4100 zwave node 0 kind 2 type 0 mark 0 name "" location "" -> EPERM)",
                                    "stderr sendto error: Operation not permitted",
                                    "log 2 libTembraAssoc:Sending Packet to Haserver Failed",
                                }));
  EXPECT_EQ(assoc.zwNodeWork.deviceKind, 0);
  EXPECT_EQ(sumOfFlags(), 0);
}

TEST_F(ZwaveDoneTest, ALeftoverRemovalGoesOutAsOne) {
  assoc.zwNodeWork.deviceKind = DEVICE_ZWAVE;
  assoc.zwNodeWork.nodeId = 9;
  assoc.zwNodeWork.requestMark = 254;
  assoc.addingDone();
  const auto sends = router.takeSends();
  ASSERT_EQ(sends.size(), 1U);
  EXPECT_EQ(sends[0].bytes[4], 9);
  EXPECT_EQ(sends[0].bytes[4 + 972], 254);
}

TEST_F(ZwaveDoneTest, LongTextsFillTheirFields) {
  for (const std::size_t length : {0U, 31U, 66U, 179U, 180U, 5000U}) {
    fill(assoc.zwNodeWork);
    ZwNodeInfo expected = assoc.zwNodeWork;
    const std::string kept(std::min<std::size_t>(length, 179), 'n');
    std::strcpy(expected.name, kept.c_str());
    std::strcpy(expected.location, kept.c_str());
    setTexts(assoc, std::string(length, 'n'), std::string(length, 'n'));
    router.forget();
    EXPECT_EQ(assoc.addingDone(), 0);
    EXPECT_EQ(router.takeSends().at(0).bytes, noticeOf(expected)) << length;
    EXPECT_NE(router.takeTrace().find(lines({logOf(kept, kept)})), std::string::npos) << length;
    EXPECT_EQ(logOf(kept, kept), std::string("log 0 ") + tempStr);
  }
}

TEST(DoneTest, IsIdleFirstAndChangesNoOtherState) {
  Router router;
  TembraAssociation& assoc = router.connect();
  for (const int kind : {DEVICE_NONE, DEVICE_ZIGBEE, DEVICE_ZWAVE}) {
    assoc.addDevZigbeeZwave();
    assoc.zwNodeWork.deviceKind = kind;
    std::string atFirstLine;
    router.onLog([&](const std::string&) {
      if (atFirstLine.empty()) atFirstLine = router.state();
    });
    assoc.addingDone();
    router.onLog(nullptr);
    EXPECT_EQ(atFirstLine, "state 1 idle 1 last 0 cancel 3 radio 0 cmdtype AddDevice") << kind;
    EXPECT_EQ(router.state(), atFirstLine) << kind;
  }
}

TEST(DoneTest, EndsTheOperationForTheClock) {
  Router router;
  TembraAssociation& assoc = router.connect();
  assoc.addDevZigbeeZwave();
  assoc.addingDone();
  router.advance(180);
  EXPECT_TRUE(router.takeEvents().empty());
}
