// What the C++ face adds to the C face: values, ownership, and texts that C would cut. No router runs.
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <tembra/endpoints.h>
#include <tembra/vocabulary.h>
#include <unistd.h>

#include <tembra/version.h>
#include <tembra/frontend.hpp>
#include <tembra/watch.hpp>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <fstream>
#include <string>
#include <utility>

namespace {

using namespace std::chrono_literals;
using namespace std::string_literals;
using tembra::Frontend;
using tembra::Result;

TEST(CppFace, HoldsWhatTheKindOfAnEventHas) {
  Frontend kit;
  ASSERT_TRUE(kit);
  ASSERT_EQ(kit.add(), Result::ok);
  const auto event = kit.next(10s);
  ASSERT_TRUE(event);
  EXPECT_EQ(event->as<tembra::Found>(), nullptr);
  const auto* ended = event->as<tembra::Ended>();
  ASSERT_NE(ended, nullptr) << event->json;
  EXPECT_EQ(event->operation, TEMBRA_OPERATION_ADD);
  EXPECT_EQ(event->number, 1U);
  EXPECT_EQ(event->radio, TEMBRA_RADIO_OTHER);
  EXPECT_EQ(event->endsIn, std::nullopt);
  EXPECT_EQ(ended->outcome, TEMBRA_FAILED);
  EXPECT_EQ(ended->reason, TEMBRA_REASON_NO_RADIO_SERVER);
  EXPECT_EQ(ended->text, tembra_reason_text(TEMBRA_REASON_NO_RADIO_SERVER));
  EXPECT_EQ(event->json.rfind("{\"schema\":1,\"event\":\"ended\"", 0), 0U) << event->json;
}

// Binds where a server would.
class Stand {
 public:
  explicit Stand(const sockaddr_in& place) : socket_(socket(AF_INET, SOCK_DGRAM, 0)) {
    EXPECT_EQ(bind(socket_, reinterpret_cast<const sockaddr*>(&place), sizeof place), 0);
  }
  ~Stand() { close(socket_); }
  Stand(const Stand&) = delete;
  Stand& operator=(const Stand&) = delete;

 private:
  int socket_;
};

TEST(Servers, AreThereWhileTheyListen) {
  ASSERT_EQ(tembra_server_listens(SERVER_HA), 0) << "the addresses are known from now on";
  const std::pair<int, const sockaddr_in&> rows[] = {{SERVER_ZIGBEE, adr_zigbee},
                                                     {SERVER_ZWAVE, adr_ozw},
                                                     {SERVER_HUE, adr_hueserver},
                                                     {SERVER_NEST, adr_nest},
                                                     {SERVER_HA, adr_ha_assoc}};
  for (const auto& [listening, place] : rows) {
    const Stand server(place);
    for (int each = SERVER_ZIGBEE - 1; each <= SERVER_MESH; ++each) {
      EXPECT_EQ(tembra::serverListens(static_cast<tembra::Server>(each)), tembra_server_listens(each) != 0);
      EXPECT_EQ(tembra_server_listens(each), each == listening ? 1 : 0) << each << " while " << listening << " listens";
    }
  }
  EXPECT_EQ(tembra_server_listens(SERVER_HA), 0);
}

TEST(CppFace, WatchesAndCancels) {
  constexpr char kPath[] = "/tmp/watched/front-end";
  EXPECT_FALSE(tembra::Watch(kPath));
  EXPECT_EQ(errno, ENOENT);
  EXPECT_FALSE(tembra::holder(kPath));
  EXPECT_EQ(errno, ENOENT);
  ASSERT_EQ(tembra_server_listens(SERVER_HUE), 0) << "the addresses are known from now on";
  const Stand server(adr_hueserver);
  tembra::Options options;
  options.program = "face";
  options.watchPath = kPath;
  Frontend kit(options);
  ASSERT_EQ(kit.hueDiscover(), Result::ok);
  ASSERT_TRUE(kit.next(10s)->as<tembra::Waiting>());
  const auto holder = tembra::holder(kPath, 10s);
  ASSERT_TRUE(holder);
  EXPECT_EQ(holder->program, "face");
  EXPECT_EQ(holder->operation, "hue-discover");
  tembra::Watch watch(kPath);
  ASSERT_TRUE(watch);
  EXPECT_GE(watch.descriptor(), 0);
  EXPECT_NE(watch.next(10s).value_or("").find(R"("holder")"), std::string::npos);
  EXPECT_FALSE(watch.next(0ms));
  EXPECT_EQ(errno, ETIMEDOUT);
  EXPECT_EQ(watch.cancel(), 0);
  EXPECT_NE(watch.next(10s).value_or("").find(R"("event":"ended")"), std::string::npos);
  EXPECT_FALSE(watch.next(10s));
  EXPECT_EQ(errno, ECONNRESET);
}

TEST(CppFace, TellsTheState) {
  Frontend kit;
  const auto state = kit.state();
  ASSERT_TRUE(state);
  EXPECT_EQ(state->operation, TEMBRA_OPERATION_NONE);
  EXPECT_EQ(state->lastEvent, 0U);
  EXPECT_FALSE(state->found);
  EXPECT_EQ(kit.stateJson().back(), '}');
  EXPECT_EQ(kit.stateJson().find('\0'), std::string::npos);
}

TEST(CppFace, TellsWhatHappened) {
  const std::size_t before = tembra::history().size();
  tembra::log(1, "a line of the log\n");
  Frontend kit;
  ASSERT_EQ(kit.add(), Result::ok);
  ASSERT_TRUE(kit.next(10s));
  const std::string text = tembra::history().substr(before);
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 3) << text;
  EXPECT_NE(text.find(R"("log":"a line of the log","level":"warning"})"), std::string::npos) << text;
  EXPECT_NE(text.find(R"("call":"add"})"), std::string::npos) << text;
  EXPECT_NE(text.find(R"("event":{"schema":1,"event":"ended")"), std::string::npos) << text;
}

TEST(CppFace, RecordsEachCallByItsOwnName) {
  const std::size_t before = tembra::history().size();
  Frontend kit;
  const auto end = [&kit](Result started) {
    ASSERT_EQ(started, Result::ok);
    while (const auto event = kit.next(10s)) {
      if (event->as<tembra::Ended>() != nullptr) return;
    }
    FAIL();
  };
  end(kit.add());
  end(kit.addAgain());
  end(kit.remove());
  end(kit.takeOut());
  end(kit.reset(TEMBRA_RESET_ZIGBEE));
  const std::string text = tembra::history().substr(before);
  for (const char* call :
       {R"("add"})", R"("add-again"})", R"("remove"})", R"("take-out"})", R"("reset","arguments":["1"]})"}) {
    EXPECT_NE(text.find(std::string(R"("call":)") + call + '\n'), std::string::npos) << call << '\n' << text;
  }
}

TEST(CppFace, CutsNoTextAtANul) {
  Frontend kit;
  EXPECT_EQ(kit.hueAddBulb("02:a1:b2:0c:00:01", "a\0b"s), Result::badText);
  EXPECT_EQ(kit.nestLink("code\0"s), Result::badText);
  EXPECT_EQ(kit.finish(0, "a\0b"s), Result::badText);
  EXPECT_EQ(kit.finish(0, "a"), Result::nothingRuns);
  EXPECT_EQ(kit.hueRemove("nonsense"), Result::invalid);
  EXPECT_EQ(kit.hueAddBridge("02:a1:b2:0c:00:01", std::chrono::seconds(601)), Result::invalid);
  EXPECT_EQ(kit.hueAddBridge("02:a1:b2:0c:00:01", std::chrono::hours(1193047)), Result::invalid);
  EXPECT_EQ(kit.reset(static_cast<tembra::Reset>(7)), Result::invalid);
  EXPECT_EQ(kit.hueAddBulb("02:a1:b2:0c:00:01", std::string(50, 'x')), Result::tooLong);
  EXPECT_EQ(kit.cancel(), Result::nothingRuns);
}

TEST(CppFace, WaitsNoLongerThanItIsTold) {
  Frontend kit;
  EXPECT_FALSE(kit.next(0ms));
  EXPECT_FALSE(kit.next(10ms));
  EXPECT_EQ(errno, ETIMEDOUT);
}

TEST(CppFace, MovesTheKit) {
  Frontend first;
  Frontend second(std::move(first));
  EXPECT_GE(second.descriptor(), 0);
  first = std::move(second);
  EXPECT_EQ(first.nestStatus(), Result::ok);
}

TEST(CppFace, SaysWhyThereIsNoKit) {
  tembra::Options wrong;
  wrong.role = static_cast<tembra::Role>(7);
  EXPECT_FALSE(Frontend(wrong));
  EXPECT_EQ(errno, EINVAL);
  {
    const Frontend first;
    EXPECT_FALSE(Frontend());
    EXPECT_EQ(errno, EBUSY);
  }
  EXPECT_TRUE(Frontend());
}

TEST(CppFace, RefusesEverythingWithoutAKit) {
  const Frontend first;
  Frontend none;
  EXPECT_EQ(none.add(), Result::noKit);
  EXPECT_EQ(none.cancel(), Result::noKit);
  EXPECT_EQ(none.descriptor(), -1);
  EXPECT_FALSE(none.next());
  EXPECT_FALSE(none.state());
  EXPECT_EQ(none.stateJson(), "");
}

TEST(CppFace, ListsDevicesOrSaysWhyNot) {
  const auto none = tembra::devices();
  ASSERT_TRUE(none);
  EXPECT_TRUE(none->empty());
  Frontend kit;
  ASSERT_EQ(kit.devices(), Result::ok);
  const auto listed = kit.next(10s);
  ASSERT_TRUE(listed && listed->as<tembra::Devices>() != nullptr);
  EXPECT_TRUE(listed->as<tembra::Devices>()->devices.empty());
  std::ofstream("/tmp/ddb") << std::string(5000, 'x');
  EXPECT_FALSE(tembra::devices());
  EXPECT_EQ(errno, EBADMSG);
}

TEST(CppFace, NamesRadiosAndServers) {
  EXPECT_STREQ(tembra_radio_name(TEMBRA_RADIO_OTHER), "other");
  EXPECT_STREQ(tembra_radio_name(TEMBRA_RADIO_ZWAVE), "Z-Wave");
  EXPECT_STREQ(tembra_radio_name(TEMBRA_RADIO_IP), "IP");
  EXPECT_EQ(tembra_radio_name(TEMBRA_RADIO_IP + 1), nullptr);
  EXPECT_EQ(tembra_server_name(TEMBRA_SERVER_NONE), nullptr);
  EXPECT_STREQ(tembra_server_name(TEMBRA_SERVER_ZIGBEE), "ZigBee");
  EXPECT_STREQ(tembra_server_name(TEMBRA_SERVER_MESH), "mesh");
  EXPECT_EQ(tembra_server_name(TEMBRA_SERVER_MESH + 1), nullptr);
}

TEST(CppFace, HasWordsForEachPhase) {
  for (int phase = -1; tembra_phase_name(phase) != nullptr || phase < 0; ++phase) {
    EXPECT_EQ(tembra_phase_text(phase) != nullptr, tembra_phase_name(phase) != nullptr) << phase;
  }
  EXPECT_STREQ(tembra_phase_text(TEMBRA_PHASE_DESCRIPTION), "while it described itself");
  EXPECT_EQ(tembra_phase_text(99), nullptr);
}

TEST(CppFace, IsOfTheVersionOfItsHeaders) { EXPECT_EQ(tembra_frontend_version(), TEMBRA_VERSION); }

TEST(CppFace, HasASentenceForEachRefusal) {
  EXPECT_STREQ(tembra::sentence(Result::ok), "");
  for (const Result result :
       {Result::busy, Result::nothingRuns, Result::invalid, Result::tooLong, Result::badText, Result::noKit}) {
    EXPECT_EQ(std::string(tembra::sentence(result)).back(), '.');
  }
  EXPECT_STREQ(tembra_refusal_text(ENOMEM), std::strerror(ENOMEM)) << "the system's own words";
  EXPECT_EQ(tembra::typeName(1), "BinarySwitch");
}

}  // namespace
