// Handing a device over to the HA server: what is said, sent and left.
#include <gtest/gtest.h>

#include <cstring>

#include "kit/router_test.h"

using kit::lines;

namespace {

class AddingDoneTest : public kit::ConnectedTest {
 protected:
  void name(std::string name, std::string location) {
    assoc.setDevName(name.data());
    assoc.setDevLocation(location.data());
    router.forget();
  }
};

}  // namespace

TEST_F(AddingDoneTest, AZwaveNodeIsSentAndForgotten) {
  assoc.zwNodeWork.deviceKind = DEVICE_ZWAVE;
  assoc.zwNodeWork.nodeId = 5;
  assoc.zwNodeWork.finalType = 45;
  assoc.zwNodeWork.requestMark = 255;
  BasicFlag = MultilevelFlag = SensorBinaryFlag = ZwAcExtFlag = 1;
  name("100%s lamp%n", "Hall");
  EXPECT_EQ(assoc.addingDone(), 0);
  EXPECT_EQ(router.takeTrace(),
            lines({
                "log 0 libTembraAssoc:inside addingDone",
                "log 0 libTembraAssoc:Name:100%s lamp%n Location:Hall",
                R"(send ha 4100 zwave node 5 kind 2 type 45 mark 255 name "100%s lamp%n" location "Hall")",
                "log 0 libTembraAssoc:Sending Packet to Haserver Success",
            }));
  EXPECT_STREQ(tempStr, "libTembraAssoc:Name:100%s lamp%n Location:Hall");
  const ZwNodeInfo empty{};
  EXPECT_EQ(std::memcmp(&assoc.zwNodeWork, &empty, sizeof empty), 0);
  EXPECT_EQ(BasicFlag + MultilevelFlag + SensorBinaryFlag + ZwAcExtFlag, 0);
  EXPECT_STREQ(assoc.devName, "100%s lamp%n") << "the texts stay";
}

TEST_F(AddingDoneTest, AZigbeeRecordIsSentAndKept) {
  assoc.zbDevice.shortAddress = 0x1234;
  assoc.zbDevice.devType = 28;
  name("Door", "Hall");
  EXPECT_EQ(assoc.addingDone(), 0);
  EXPECT_EQ(router.takeTrace(),
            lines({
                "log 0 libTembraAssoc:inside addingDone",
                "log 0 libTembraAssoc:Name:Door Location:Hall",
                "log 0 libTembraAssoc:Sending final addingDone packet to HA Server",
                R"(send ha 4100 zigbee address 4660 message 10 type 28 name "Door" location "Hall")",
            }));
  EXPECT_EQ(assoc.zbDevice.msgCode, 10);
  EXPECT_STREQ(assoc.zbDevice.location, "Hall");
}

TEST_F(AddingDoneTest, EveryKindThatIsNoZwaveNodeIsAZigbeeDevice) {
  for (const int kind : {0, 1, 3, 255, -2, 256 + DEVICE_ZWAVE}) {
    assoc.zwNodeWork.deviceKind = kind;
    router.forget();
    EXPECT_EQ(assoc.addingDone(), 0);
    EXPECT_NE(router.takeTrace().find("send ha 4100 zigbee"), std::string::npos) << kind;
  }
}

// The name is written first and may run into the location, which is written over its end.
TEST_F(AddingDoneTest, ALongNameOfAZigbeeDeviceJoinsTheLocation) {
  name(std::string(40, 'n'), "Hall");
  assoc.addingDone();
  EXPECT_EQ(std::string(assoc.zbDevice.name, sizeof assoc.zbDevice.name), std::string(32, 'n'));
  EXPECT_STREQ(assoc.zbDevice.location, "Hall");
}
