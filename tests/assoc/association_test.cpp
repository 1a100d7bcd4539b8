// The one object, its roles and its callback.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <new>
#include <stdexcept>
#include <thread>
#include <vector>

#include "kit/router.h"

using kit::Node;
using kit::Router;

namespace {

template <typename T>
bool isAllZero(const T& object) {
  const auto* first = reinterpret_cast<const unsigned char*>(&object);
  return std::all_of(first, first + sizeof object, [](unsigned char byte) { return byte == 0; });
}

const void* virtualTable(const TembraAssociation* object) {
  const void* table = nullptr;
  std::memcpy(&table, static_cast<const void*>(object), sizeof table);
  return table;
}

}  // namespace

TEST(GlobalsTest, HaveTheirInitialValues) {
  const Router router;
  EXPECT_EQ(TembraAssociation::singleton, nullptr);
  EXPECT_EQ(idle, 1);
  EXPECT_TRUE(isAllZero(cmdtype));
  EXPECT_TRUE(isAllZero(tempStr));
  EXPECT_EQ(DevId, 0);
  EXPECT_STREQ(DBName, "/tmp/ddb");
  EXPECT_EQ(BasicFlag, 0);
  EXPECT_EQ(MultilevelFlag, 0);
  EXPECT_EQ(SensorBinaryFlag, 0);
  EXPECT_EQ(ZwAcExtFlag, 0);
  EXPECT_TRUE(isAllZero(username1));
  EXPECT_TRUE(isAllZero(buff));
  EXPECT_EQ(SensorType, 0);
  EXPECT_EQ(HomeId, 0U);
}

TEST(GlobalsTest, HaveTheSizesThatFrontEndsDeclare) {
  EXPECT_EQ(sizeof idle, 1U);
  EXPECT_EQ(sizeof cmdtype, 60U);
  EXPECT_EQ(sizeof tempStr, 512U);
  EXPECT_EQ(sizeof DBName, 10U);
  EXPECT_EQ(sizeof meshRx_packet, 4100U);
  EXPECT_EQ(sizeof meshTagNames, 37U * 32U);
}

TEST(CreationTest, OpensNothingAndSendsNothing) {
  Router router;
  router.watch(kit::kWatchConnection | kit::kWatchDatabase);
  const TembraAssociation& assoc = *TembraAssociation::getInstance();
  EXPECT_EQ(router.takeTrace(), "");
  EXPECT_EQ(assoc.sock, 0);
  EXPECT_EQ(assoc.running, 0);
  EXPECT_EQ(assoc.closeMark, 0);
  EXPECT_EQ(assoc.clientRole, 0);
  EXPECT_EQ(assoc.eventCallback, nullptr);
  EXPECT_EQ(assoc.logger, Logger::getInstance());
  EXPECT_TRUE(isAllZero(assoc.zwNodeWork));
  EXPECT_TRUE(isAllZero(assoc.zwNodeRx));
  EXPECT_EQ(router.state(), "state 0 idle 1 last 0 cancel 0 radio 0 cmdtype ");
}

TEST(CreationTest, ALoggerThatThrowsLeavesNoObject) {
  Router router;
  router.loggerThrows(true);
  EXPECT_THROW(TembraAssociation::webServerAssocInit(), std::runtime_error);
  EXPECT_EQ(TembraAssociation::singleton, nullptr);
  EXPECT_EQ(len_assoc, 0) << "endpoints are resolved after the Logger was fetched";
  router.loggerThrows(false);
  EXPECT_NE(TembraAssociation::webServerAssocInit(), nullptr);
  EXPECT_EQ(len_assoc, 16);
}

TEST(CreationTest, FirstCallsOfManyThreadsGiveOneObject) {
  const Router router;
  std::vector<TembraAssociation*> seen(8);
  std::vector<std::thread> threads;
  threads.reserve(seen.size());
  for (auto& object : seen) threads.emplace_back([&object] { object = TembraAssociation::getInstance(); });
  for (auto& thread : threads) thread.join();
  for (const auto* object : seen) EXPECT_EQ(object, TembraAssociation::singleton);
}

TEST(RoleTest, EachInitialiserStoresItsRoleInTheSameObject) {
  const Router router;
  constexpr struct {
    TembraAssociation* (*initialise)();
    int role;
  } kRoles[] = {
      {&TembraAssociation::webServerAssocInit, 1}, {&TembraAssociation::LCDAssocInit, 2},
      {&TembraAssociation::cloudappsAssocInit, 3}, {&TembraAssociation::meshServerAssocInit, 4},
      {&TembraAssociation::FreeUsr1AssocInit, 5},  {&TembraAssociation::FreeUsr2AssocInit, 6},
  };
  const TembraAssociation* object = TembraAssociation::getInstance();
  for (const auto& row : kRoles) {
    EXPECT_EQ(row.initialise(), object);
    EXPECT_EQ(object->clientRole, row.role);
  }
  EXPECT_EQ(TembraAssociation::getInstance()->clientRole, 6) << "asking for the object changes no role";
}

TEST(RoleTest, ANewRoleWhileOpenChangesTheRoleOnly) {
  Router router;
  TembraAssociation& assoc = router.connect(&TembraAssociation::LCDAssocInit);
  const int sock = assoc.sock;
  TembraAssociation::meshServerAssocInit();
  EXPECT_EQ(assoc.clientRole, 4);
  EXPECT_EQ(assoc.sock, sock);
  EXPECT_EQ(assoc.running, 1);
  EXPECT_EQ(router.takeTrace(), "");
}

TEST(CallbackTest, WithoutOneTheAddProceedsUnheard) {
  Router router;
  TembraAssociation& assoc = router.assoc();
  ASSERT_EQ(router.open(), 0);
  assoc.addDevZigbeeZwave();
  router.zwave().send(Node(5));
  EXPECT_EQ(router.state(), "state 4 idle 0 last 3 cancel 2 radio 2 cmdtype AddingSensor");
  assoc.setDevType(DEVTYPE_BINARY_SWITCH);
  EXPECT_EQ(router.state(), "state 4 idle 0 last 7 cancel 2 radio 2 cmdtype EditNameLocation");
  EXPECT_TRUE(router.takeEvents().empty());
}

TEST(CallbackTest, NullSwitchesEventsOff) {
  Router router;
  TembraAssociation& assoc = router.connect();
  assoc.registerAssocEventCB(nullptr);
  assoc.addDevZigbeeZwave();
  router.zwave().send(Node(5));
  EXPECT_TRUE(router.takeEvents().empty());
  EXPECT_EQ(assoc.assocState, ZW_ASSOC);
}

namespace {
int eventsOfSecond = 0;
}

TEST(CallbackTest, ASecondOneReplacesTheFirst) {
  Router router;
  TembraAssociation& assoc = router.connect();
  assoc.registerAssocEventCB([](AssocEvent*) { ++eventsOfSecond; });
  assoc.addDevZigbeeZwave();
  router.zwave().send(Node(5));
  EXPECT_EQ(eventsOfSecond, 1);
  EXPECT_TRUE(router.takeEvents().empty());
}

TEST(CallbackTest, RunsOnTheReceiveThread) {
  Router router;
  router.connect().addDevZigbeeZwave();
  router.zwave().send(Node(5));
  const auto events = router.takeEvents();
  ASSERT_EQ(events.size(), 1U);
  EXPECT_NE(events[0].thread, std::this_thread::get_id());
}

TEST(CopyTest, CarriesNoFieldAndItsDestructionClosesNothing) {
  Router router;
  TembraAssociation& assoc = router.connect();
  router.watch(kit::kWatchConnection);
  constexpr unsigned char kUntouched = 0x5A;
  alignas(TembraAssociation) unsigned char storage[sizeof(TembraAssociation)];
  std::memset(storage, kUntouched, sizeof storage);
  auto* copy = new (storage) TembraAssociation(assoc);
  EXPECT_EQ(virtualTable(copy), virtualTable(&assoc));
  copy->~TembraAssociation();
  for (std::size_t at = sizeof(void*); at < sizeof storage; ++at) ASSERT_EQ(storage[at], kUntouched) << "byte " << at;
  EXPECT_EQ(router.takeTrace(), "");
  assoc.addDevZigbeeZwave();
  router.zwave().send(Node(5));
  EXPECT_EQ(assoc.assocState, ZW_ASSOC) << "the connection still works";
}

TEST(VersionTest, HeadersAndLibraryAreOfOneVersion) { EXPECT_EQ(tembra_version(), TEMBRA_VERSION); }
