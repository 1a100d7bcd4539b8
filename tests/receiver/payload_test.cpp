// The texts of the payloads, and what the service's records hold meanwhile.
#include <gtest/gtest.h>

#include <cstring>

#include "kit/router.h"
#include "nodes.h"

using kit::Device;
using kit::Node;
using kit::RecordedEvent;
using kit::Router;

namespace {

class PayloadTest : public testing::Test {
 protected:
  Router router;
  TembraAssociation& assoc = router.connect();

  RecordedEvent event(int state, const Node& node) {
    assoc.assocState = state;
    router.zwave().send(node);
    const auto events = router.takeEvents();
    EXPECT_EQ(events.size(), 1U);
    return events.empty() ? RecordedEvent{} : events.back();
  }
};

}  // namespace

// Front ends write the command type, too: it may fill its field, and be anything.
TEST_F(PayloadTest, OfATimeOutWhoseCommandTypeHasNoEnd) {
  std::memset(cmdtype, '%', sizeof cmdtype);
  idle = 0;
  router.advance(180);
  const std::string json = router.takeEvents().at(0).timeout().json;
  EXPECT_EQ(json, "{\"CommandType\":\"" + std::string(59, '%') +
                      R"(", "MobileInternalIndex":"","Success":"false","Reason":"TimeoutReached"})");
}

TEST_F(PayloadTest, NamesThatFillTheirFieldAreCut) {
  router.database().put(Device(12, std::string(360, 'n')).zwave(5));
  const DeviceReport report = event(DEASSOC, Node(5)).report();
  EXPECT_EQ(std::string(report.removedName, sizeof report.removedName), std::string(179, 'n') + '\0');
  EXPECT_EQ(report.removedId, 12);
  EXPECT_NE(router.takeTrace().find("log 0 libTembraAssoc:" + std::string(179, 'n') + " is Removing (Z-wave)\n"),
            std::string::npos);
}

TEST_F(PayloadTest, NamesAreNoFormats) {
  router.database().put(Device(12, "100%s %n%d").zwave(5));
  EXPECT_STREQ(event(DEASSOC, Node(5)).report().removedName, "100%s %n%d");
  EXPECT_NE(router.takeTrace().find("log 0 libTembraAssoc:100%s %n%d is Removing (Z-wave)\n"), std::string::npos);
}

// The final type is the proposed one until the callback returned, then the pending device's, whoever set it last.
TEST_F(PayloadTest, TheFinalTypeOfAnOfferIsProposedFirst) {
  int finalTypeInCallback = -1;
  router.onEvent([&](AssocEvent* told) {
    if (told->code == EVENT_SELECT_TYPE) finalTypeInCallback = assoc.zwNodeWork.finalType;
  });
  assoc.devType = 12;
  event(ZW_ASSOC_QUERY, kSwitch);
  EXPECT_EQ(finalTypeInCallback, 1);
  EXPECT_EQ(assoc.zwNodeWork.finalType, 12);
  EXPECT_EQ(assoc.zwNodeWork.proposedType, 1);
  EXPECT_EQ(assoc.classifiedType, 1);
}

TEST_F(PayloadTest, TheTypeMayBeChosenInTheCallback) {
  router.onEvent([&](AssocEvent* told) {
    if (told->code == EVENT_SELECT_TYPE) assoc.setDevType2(DEVTYPE_MULTI_SWITCH);
  });
  event(ZW_ASSOC_QUERY, kSwitch);
  EXPECT_EQ(assoc.zwNodeWork.finalType, 43);
}

TEST_F(PayloadTest, TheFinalTypeOfACreatedDeviceStaysTheProposedOne) {
  assoc.devType = 12;
  event(ZW_ASSOC_QUERY, kGateway);
  EXPECT_EQ(assoc.zwNodeWork.finalType, 8);
}
