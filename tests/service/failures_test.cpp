// The last failure to send and to open.
#include <gtest/gtest.h>
#include <tembra/service.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <ostream>
#include <thread>

#include "kit/router_test.h"

using kit::Call;
using kit::Router;

namespace {

tembra_failure last(int kind) {
  tembra_failure failure{};
  failure.size = sizeof failure;
  EXPECT_EQ(tembra_last_failure(kind, &failure), 0);
  return failure;
}

void expectFailure(const tembra_failure& failure, unsigned count, int server, int cause, int error) {
  EXPECT_EQ(failure.count, count);
  EXPECT_EQ(failure.server, server);
  EXPECT_EQ(failure.cause, cause);
  EXPECT_EQ(failure.error, error);
  EXPECT_STREQ(failure.text, error == 0 ? "" : std::strerror(error));
}

using Sending = kit::ConnectedTest;

struct Opening {
  const char* name;
  void (*prepare)(Router&);
  int result;
  int cause;
  int error;
  friend std::ostream& operator<<(std::ostream& stream, const Opening& opening) { return stream << opening.name; }
};

// While the opening runs the router's command, without the lock.
void closeMeanwhile(Router& router) {
  router.nvram().answerWith("touch /tmp/asked; sleep 1; echo 3");
  static std::jthread closing;
  closing = std::jthread([&assoc = router.assoc()] {
    while (!std::filesystem::exists("/tmp/asked")) std::this_thread::yield();
    assoc.closeAssocConnection();
  });
}

const Opening kOpenings[] = {
    {"InUse", [](Router& router) { router.open(); }, -1, TEMBRA_OPENING_IN_USE, EADDRINUSE},
    {"NoDescriptor", [](Router& router) { router.fail(Call::kSocket, EMFILE); }, -1, TEMBRA_OPENING_NO_SOCKET, EMFILE},
    {"NoMemory", [](Router& router) { router.fail(Call::kSocket, ENOMEM); }, -1, TEMBRA_OPENING_NO_MEMORY, ENOMEM},
    {"NoPriority", [](Router& router) { router.fail(Call::kSetPriority, EPERM); }, -1, TEMBRA_OPENING_NO_SOCKET, EPERM},
    {"NoAddress", [](Router& router) { router.fail(Call::kBind, EADDRNOTAVAIL); }, -1, TEMBRA_OPENING_NO_SOCKET,
     EADDRNOTAVAIL},
    {"NoThread", [](Router& router) { router.fail(Call::kCreateThread, EAGAIN); }, 0, TEMBRA_OPENING_NO_THREAD, EAGAIN},
    {"AThreadThatNeverComes",
     [](Router& router) {
       router.fail(Call::kCreateThread, 0);
       router.fail(Call::kAwaitChange, ETIMEDOUT);
     },
     0, TEMBRA_OPENING_NO_THREAD, ETIMEDOUT},
    {"ClosedMeanwhile", closeMeanwhile, -1, TEMBRA_OPENING_REPLACED, 0},
};

class FailedOpening : public testing::TestWithParam<Opening> {};

INSTANTIATE_TEST_SUITE_P(Is, FailedOpening, testing::ValuesIn(kOpenings),
                         [](const auto& tested) { return tested.param.name; });

}  // namespace

TEST_P(FailedOpening, TellsItsCause) {
  Router router;
  router.assoc();
  GetParam().prepare(router);
  expectFailure(last(TEMBRA_FAILURE_OPENING), 0, 0, 0, 0);
  EXPECT_EQ(router.open(), GetParam().result);
  expectFailure(last(TEMBRA_FAILURE_OPENING), 1, 0, GetParam().cause, GetParam().error);
  expectFailure(last(TEMBRA_FAILURE_SEND), 0, 0, 0, 0);
}

TEST(NoFailure, IsAllZero) {
  tembra_failure failure;
  std::memset(&failure, 0x77, sizeof failure);
  failure.size = sizeof failure;
  EXPECT_EQ(tembra_last_failure(TEMBRA_FAILURE_SEND, &failure), 0);
  tembra_failure none{};
  none.size = sizeof none;
  EXPECT_EQ(std::memcmp(&failure, &none, sizeof none), 0);
}

TEST(Opening, ThatWorksLeavesTheLastFailure) {
  Router router;
  router.fail(Call::kSocket, EMFILE, 2);
  EXPECT_EQ(router.open(), -1);
  EXPECT_EQ(router.open(), -1);
  router.connect();
  expectFailure(last(TEMBRA_FAILURE_OPENING), 2, 0, TEMBRA_OPENING_NO_SOCKET, EMFILE);
}

TEST_F(Sending, TellsWhereToAndWhyNot) {
  const ServerType servers[] = {SERVER_ZIGBEE, SERVER_ZWAVE, SERVER_HUE, SERVER_NEST, SERVER_HA};
  HaNotice datagram{};  // the longest
  unsigned count = 0;
  for (const ServerType server : servers) {
    for (const int error : {ENETUNREACH, EPERM}) {
      router.fail(Call::kSendto, error);
      EXPECT_EQ(assoc.sendToServers(server, &datagram), -1);
      expectFailure(last(TEMBRA_FAILURE_SEND), ++count, server, 0, error);
      EXPECT_NE(router.takeTrace().find(std::string("stderr sendto error: ") + std::strerror(error)),
                std::string::npos);
    }
  }
  EXPECT_EQ(assoc.sendToServers(SERVER_ZWAVE, &datagram), 0);
  expectFailure(last(TEMBRA_FAILURE_SEND), count, SERVER_HA, 0, EPERM);
  expectFailure(last(TEMBRA_FAILURE_OPENING), 0, 0, 0, 0);
}

TEST_F(Sending, CountsEachDatagramOfAnOperation) {
  router.fail(Call::kSendto, ENETUNREACH, 2);
  assoc.addDevZigbeeZwave();
  const tembra_failure failure = last(TEMBRA_FAILURE_SEND);
  EXPECT_EQ(failure.count, 2U);
  EXPECT_EQ(failure.error, ENETUNREACH);
}

// Nothing was to be sent.
TEST_F(Sending, ToNobodyIsNoFailureOfTheSystem) {
  HaNotice datagram{};
  EXPECT_EQ(assoc.sendToServers(SERVER_MESH, &datagram), 0);
  EXPECT_EQ(assoc.sendToServers(static_cast<ServerType>(9), &datagram), -1);
  expectFailure(last(TEMBRA_FAILURE_SEND), 0, 0, 0, 0);
}

TEST_F(Sending, HasNoFailureOfAnUnknownKind) {
  tembra_failure failure{};
  failure.size = sizeof failure;
  for (const int kind : {0, 3, -1}) EXPECT_EQ(tembra_last_failure(kind, &failure), EINVAL);
}
