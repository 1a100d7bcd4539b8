// Two front ends on one router: one works, the other says who works, watches and cancels.
#include <gtest/gtest.h>
#include <tembra/frontend.h>
#include <tembra/watch.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>

#include "kit/json_schema.h"
#include "kit/program.h"
#include "kit/text.h"
#include "watch_pointer.h"

namespace tembra::test {
namespace {

constexpr char kPath[] = "/tmp/watched/front-end";
constexpr int kLong = 20000;

using kit::JsonSchema;
using kit::Program;
using Lines = std::vector<std::string>;

bool contains(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

std::string next(const Watch& watch) {
  const char* const line = tembra_watch_next(watch.get(), kLong);
  return line != nullptr ? line : strerrorname_np(errno);
}

/// What the published schemas find wrong with a line; empty: nothing.
std::string faultOf(const std::string& line) {
  const auto object = nlohmann::json::parse(line);
  if (object.contains("event")) return JsonSchema(TEMBRA_SCHEMAS "/tembra-event.schema.json").faultOf(object);
  std::string fault = JsonSchema(TEMBRA_SCHEMAS "/tembra-watch.schema.json").faultOf(object);
  if (!fault.empty() || object.contains("error")) return fault;
  return JsonSchema(TEMBRA_SCHEMAS "/tembra-state.schema.json").faultOf(object.at("state"));
}

/// All lines until the other end closes.
Lines restOf(const Watch& watch) {
  Lines lines;
  for (std::string line; (line = next(watch)) != "ECONNRESET";) lines.push_back(line);
  return lines;
}

class Holders : public ::testing::Test {
 protected:
  Holders() { router_.waitFor("tembra-sim: ready"); }
  ~Holders() override { EXPECT_EQ(Program({TEMBRA_SIM_PROGRAM, "stop"}).end().status, 0); }

  static std::vector<std::string> frontEnd(const std::string& name, const std::vector<std::string>& operations) {
    std::vector<std::string> command = {TEMBRA_HOLDER_PROGRAM, kPath, name};
    command.insert(command.end(), operations.begin(), operations.end());
    return command;
  }

  void press(const std::string& device) { EXPECT_EQ(Program({TEMBRA_SIM_PROGRAM, "press", device}).end().status, 0); }

  static Watch watch() {
    Watch watch(tembra_watch_open(kPath));
    EXPECT_TRUE(watch) << std::strerror(errno);
    return watch;
  }

  static tembra_holder holder(int expected = 0) {
    tembra_holder holder{};
    holder.size = sizeof holder;
    EXPECT_EQ(tembra_read_holder(kPath, kLong, &holder), expected);
    return holder;
  }

  /// A router that knows no device.
  static Program newRouter() {
    std::filesystem::remove("/tmp/ddb");
    std::filesystem::remove_all("/tmp/watched");
    return Program({TEMBRA_SIM_PROGRAM, "run", "--latency", "5"});
  }

  Program router_ = newRouter();
};

TEST_F(Holders, AnotherProcessSeesAnAddFromItsMiddleToItsEnd) {
  holder(ENOENT);
  Program kiosk(frontEnd("kiosk", {"add"}));
  kiosk.waitFor(R"("event":"waiting")");
  const tembra_holder who = holder();
  EXPECT_STREQ(who.program, "kiosk");
  EXPECT_EQ(who.role, 2);
  EXPECT_STREQ(who.operation, "add");
  EXPECT_STREQ(who.phase, "button");

  const Watch watching = watch();
  const std::string state = next(watching);
  EXPECT_TRUE(contains(state, R"("program":"kiosk","pid":)" + std::to_string(who.pid))) << state;
  press("metering-plug");
  const Lines heard = restOf(watching);
  const kit::Ended ended = kiosk.end();
  EXPECT_EQ(ended.status, 0) << ended.errors;
  Lines told = kit::linesOf(ended.output);
  ASSERT_GT(told.size(), 4U) << ended.output;
  told.erase(told.begin());  // the state was of that moment
  EXPECT_TRUE(contains(state, R"("last_event":1)")) << state;
  EXPECT_EQ(heard, told);
  EXPECT_EQ(faultOf(state), "");
  for (const std::string& line : heard) EXPECT_EQ(faultOf(line), "");
  EXPECT_TRUE(contains(heard.back(), R"("outcome":"done")")) << heard.back();
  holder(ENOENT);
}

TEST_F(Holders, AnotherProcessCancels) {
  Program kiosk(frontEnd("kiosk", {"add"}));
  kiosk.waitFor(R"("event":"waiting")");
  const Watch watching = watch();
  EXPECT_TRUE(contains(next(watching), R"("phase":"button")"));
  EXPECT_EQ(tembra_watch_cancel(watching.get()), 0);
  const Lines heard = restOf(watching);
  ASSERT_EQ(heard.size(), 1U);
  EXPECT_TRUE(contains(heard[0], R"("outcome":"cancelled")")) << heard[0];
  EXPECT_TRUE(contains(kiosk.end().output, heard[0]));
}

TEST_F(Holders, WhoCannotWorkSaysWhoWorks) {
  Program cloud(frontEnd("cloud agent", {"remove"}));
  cloud.waitFor(R"("event":"waiting")");
  const std::string pid = std::to_string(holder().pid);
  const kit::Ended refused = Program(frontEnd("kiosk", {"add"})).end();
  const std::string expected = "Another front end has the connection: cloud agent (process " + pid + ") for ";
  EXPECT_TRUE(contains(refused.output, expected)) << refused.output;
  EXPECT_TRUE(contains(refused.output, ", doing remove.")) << refused.output;
  const auto ended = nlohmann::json::parse(refused.output);
  EXPECT_EQ(faultOf(refused.output), "");
  EXPECT_EQ(ended.at("reason"), "in-use");
  nlohmann::json who = ended.at("holder");
  EXPECT_EQ(who.at("since"), holder().since);
  who.erase("since");
  EXPECT_EQ(who, nlohmann::json({{"pid", holder().pid},
                                 {"role", 2},
                                 {"program", "cloud agent"},
                                 {"operation", "remove"},
                                 {"phase", "button"}}));
  EXPECT_STREQ(holder().program, "cloud agent");
}

TEST_F(Holders, AHolderThatIsKilledMakesRoom) {
  Program first(frontEnd("first", {"add"}));
  first.waitFor(R"("event":"waiting")");
  const Watch watching = watch();
  EXPECT_NE(next(watching), "ECONNRESET");
  first.signal(SIGKILL);
  EXPECT_EQ(next(watching), "ECONNRESET");
  first.end();
  EXPECT_TRUE(std::filesystem::exists(kPath));
  holder(ENOENT);

  Program second(frontEnd("second", {"add"}));
  second.waitFor(R"("event":"waiting")");
  EXPECT_STREQ(holder().program, "second");
}

TEST_F(Holders, AConnectionThatIsKeptHasTheSameWatchers) {
  Program kiosk(frontEnd("kiosk", {"--keep-open", "add", "add"}));
  kiosk.waitFor(R"("event":"waiting")");
  const Watch watching = watch();
  next(watching);
  tembra_watch_cancel(watching.get());
  EXPECT_TRUE(contains(next(watching), R"("event":"ended")"));
  EXPECT_TRUE(contains(next(watching), R"("event":"waiting")"));
  EXPECT_STREQ(holder().operation, "add");
  tembra_watch_cancel(watching.get());
  EXPECT_TRUE(contains(next(watching), R"("event":"ended")"));
  EXPECT_EQ(next(watching), "ECONNRESET");
}

TEST_F(Holders, APathThatCannotBeServedIsSaidOnceAndFailsNothing) {
  std::filesystem::create_directory("/tmp/watched");
  std::ofstream(kPath) << "text";
  Program kiosk(frontEnd("kiosk", {"add"}));
  kiosk.waitFor(R"("reason":"not-watched")");
  kiosk.waitFor(R"("event":"waiting")");
  EXPECT_EQ(faultOf(kit::linesOf(kiosk.output()).front()), "");
  press("metering-plug");
  const kit::Ended ended = kiosk.end();
  EXPECT_TRUE(contains(ended.output, R"("outcome":"done")")) << ended.output;
  EXPECT_TRUE(contains(ended.output, "/tmp/watched/front-end is no socket.")) << ended.output;
  EXPECT_TRUE(contains(ended.output, R"("why":"nobody can watch: /tmp/watched/front-end is no socket")"))
      << ended.output;
}

}  // namespace
}  // namespace tembra::test
