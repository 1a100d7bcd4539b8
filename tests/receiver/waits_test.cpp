// Every row of the table of waits in docs/state-machine.md, and what the page says of answers that come too late.
#include <gtest/gtest.h>

#include <map>

#include "page_inputs.h"
#include "state_page.h"

using kit::Node;
using kit::Router;
using kit::ZigbeeDevice;

namespace {

constexpr std::size_t kRows = 16;

void zigbeeSays(Router& router, std::initializer_list<int> statuses) {
  for (const int status : statuses) router.zigbee().send(ZigbeeDevice(kUnknownAddress).status(status));
}

void nodesAnswer(Router& router, std::initializer_list<Node> nodes) {
  for (const Node& node : nodes) router.zwave().send(node);
}

void addZwave(Router& router, std::initializer_list<Node> nodes) {
  router.assoc().addDevZigbeeZwave();
  nodesAnswer(router, nodes);
}

void addZigbee(Router& router, std::initializer_list<int> statuses) {
  router.assoc().addDevZigbeeZwave();
  zigbeeSays(router, statuses);
}

void create(Router& router, const ZigbeeDevice& device) {
  addZigbee(router, {1, 6});
  router.zigbee().send(device);
}

void removeZwave(Router& router, unsigned char node) {
  router.assoc().removeDevZigbeeZwave();
  nodesAnswer(router, {Node(node)});
}

// How each wait of the page comes about, by its column "Since".
const std::map<std::string, void (*)(Router&)> kStories = {
    {"`addDevZigbeeZwave`", [](Router& router) { router.assoc().addDevZigbeeZwave(); }},
    {"Z-Wave event 3", [](Router& router) { addZwave(router, {Node(kUnknownNode)}); }},
    {"Z-Wave event 5",
     [](Router& router) {
       addZwave(router, {Node(kUnknownNode), Node(kUnknownNode)});
     }},
    {"Z-Wave event 6",
     [](Router& router) {
       addZwave(router, {Node(kUnknownNode), Node(kUnknownNode), nodeWithSubTypes()});
     }},
    {"Z-Wave event 7",
     [](Router& router) {
       addZwave(router, {Node(kUnknownNode), Node(kUnknownNode), nodeWithoutSubTypes()});
     }},
    {"ZigBee event 3", [](Router& router) { addZigbee(router, {1}); }},
    {"ZigBee event 5",
     [](Router& router) {
       addZigbee(router, {1, 6});
     }},
    {"ZigBee event 6", [](Router& router) { create(router, deviceWithSubTypes()); }},
    {"ZigBee event 7", [](Router& router) { create(router, deviceWithoutSubTypes()); }},
    {"ZigBee status 5",
     [](Router& router) {
       addZigbee(router, {1, 6, 5});
     }},
    {"`removeDevZigbeeZwave`", [](Router& router) { router.assoc().removeDevZigbeeZwave(); }},
    {"Z-Wave event 11", [](Router& router) { removeZwave(router, kKnownNode); }},
    {"Z-Wave event 12", [](Router& router) { removeZwave(router, kUnknownNode); }},
    {"a Hue command", [](Router& router) { router.assoc().Hue_initiateAdd(); }},
    {"Hue event 21",
     [](Router& router) {
       router.assoc().Hue_initiateAdd();
       router.hue().send(HueAnswer{});
     }},
    {"a Nest command", [](Router& router) { router.assoc().Nest_remove(); }},
};

std::string codesOf(const std::vector<kit::RecordedEvent>& events) {
  std::string codes;
  for (const auto& recorded : events) codes += std::to_string(recorded.event.code) + " ";
  return codes;
}

std::string cancelledIn(const std::string& trace) {
  std::string radios;
  if (trace.find("send zigbee 320 \"network pjoin 0\"") != std::string::npos) radios = "ZigBee";
  if (trace.find("send zwave 236 op 4") != std::string::npos) radios += radios.empty() ? "Z-Wave" : ", Z-Wave";
  return radios.empty() ? "none" : radios;
}

void expectTimeOut(Router& router, const std::string& carried, const std::string& cancelled) {
  const int stateBefore = router.assoc().assocState;
  router.forget();
  router.advance(1);
  EXPECT_EQ(cancelledIn(router.takeTrace()), cancelled);
  const auto events = router.takeEvents();
  ASSERT_EQ(codesOf(events), "2 ");
  EXPECT_EQ(std::to_string(events[0].timeout().lastEventCode), carried);
  EXPECT_EQ(router.assoc().assocState, stateBefore);
  EXPECT_EQ(idle, 1);
}

void tryWait(Router& router, const std::vector<std::string>& cells) {
  SCOPED_TRACE(cells[0] + " since " + cells[1]);
  router.connect();
  kStories.at(cells[1])(router);
  ASSERT_EQ(idle, 0);
  router.forget();
  router.advance(std::stol(cells[2]) - 1);
  EXPECT_EQ(codesOf(router.takeEvents()), "") << "not a second too early";
  expectTimeOut(router, cells[3], cells[4]);
  router.close();
}

class LateAnswerTest : public testing::Test {
 protected:
  Router router;
  TembraAssociation& assoc = router.connect();

  void SetUp() override { fillHome(router); }

  std::string eventsAfter(const ZigbeeDevice& answer) {
    router.forget();
    router.zigbee().send(answer);
    return codesOf(router.takeEvents());
  }
};

}  // namespace

TEST(WaitsTest, EveryRowOfThePageHolds) {
  Router router;
  fillHome(router);
  const auto rows = readSection("Waits").rows;
  EXPECT_EQ(rows.size(), kRows);
  for (const auto& cells : rows) tryWait(router, cells);
}

TEST_F(LateAnswerTest, AnAddGoesOnAfterItsTimeOut) {
  assoc.addDevZigbeeZwave();
  router.advance(180);
  ASSERT_EQ(idle, 1);
  EXPECT_EQ(eventsAfter(ZigbeeDevice(kUnknownAddress).status(1)), "3 ");
  EXPECT_EQ(idle, 0);
}

TEST_F(LateAnswerTest, ARemovalDropsTheDeviceAfterItsTimeOut) {
  assoc.removeDevZigbeeZwave();
  router.advance(180);
  EXPECT_EQ(eventsAfter(ZigbeeDevice(kKnownAddress).status(2)), "11 ");
}

TEST_F(LateAnswerTest, ACreatedDeviceLeavesIdleAtOneAfterACancel) {
  addZigbee(router, {1, 6});
  assoc.sendCancelTo(cancel_both);
  EXPECT_EQ(eventsAfter(deviceWithoutSubTypes()), "7 ");
  EXPECT_EQ(idle, 1);
  router.advance(500);
  EXPECT_EQ(codesOf(router.takeEvents()), "") << "no time-out follows";
  EXPECT_EQ(assoc.addingDone(), 0);
}

TEST_F(LateAnswerTest, ACancelKeepsWhatTheNextTimeOutTellsAndCancels) {
  addZigbee(router, {1});
  assoc.sendCancelTo(cancel_both);
  router.advance(60);
  router.advance(1);
  assoc.Nest_remove();
  router.advance(178);
  expectTimeOut(router, "3", "ZigBee");
}

TEST_F(LateAnswerTest, AShortWaitStaysForTheNextCommand) {
  removeZwave(router, kKnownNode);
  nodesAnswer(router, {Node(kKnownNode)});
  ASSERT_EQ(idle, 1);
  assoc.Nest_remove();
  router.advance(19);
  expectTimeOut(router, "0", "none");
}
