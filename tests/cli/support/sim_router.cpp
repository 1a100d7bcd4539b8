#include "support/sim_router.h"

#include <gtest/gtest.h>

#include <sstream>

namespace tembra::test {
namespace {

constexpr char kToZigbee[] = "library -> ZigBee server   ";
constexpr char kToZwave[] = "library -> Z-Wave server   ";

std::vector<std::string> simCommand(const std::vector<std::string>& options) {
  std::vector<std::string> command = {TEMBRA_SIM_PROGRAM, "run", "--timeline", "--latency", "5"};
  command.insert(command.end(), options.begin(), options.end());
  return command;
}

// What stands behind `prefix` in the lines of a timeline.
std::vector<std::string> linesBehind(const std::string& prefix, const std::string& timeline) {
  std::vector<std::string> rest;
  std::istringstream lines(timeline);
  for (std::string line; std::getline(lines, line);) {
    const auto at = line.find(prefix);
    if (at != std::string::npos) rest.push_back(line.substr(at + prefix.size()));
  }
  return rest;
}

void press(const std::string& device) {
  const Ended pressed = Program({TEMBRA_SIM_PROGRAM, "press", device}).end();
  EXPECT_EQ(pressed.status, 0) << pressed.errors;
}

}  // namespace

SimRouter::SimRouter(const std::vector<std::string>& options) : program_(simCommand(options)) {
  program_.waitFor("tembra-sim: ready");
}

void SimRouter::pressOnAdd(const std::string& device) {
  waitFor(kToZwave + std::string("add a device"));
  press(device);
}

void SimRouter::pressOnRemove(const std::string& device) {
  waitFor(kToZwave + std::string("remove a device"));
  press(device);
}

void SimRouter::say(std::vector<std::string> answer) {
  answer.insert(answer.begin(), {TEMBRA_SIM_PROGRAM, "answer"});
  EXPECT_EQ(Program(answer).end().status, 0);
}

void SimRouter::waitForBothRadiosToHear(const std::string& command) {
  program_.waitForAll({kToZigbee + command, kToZwave + command});
}

Told SimRouter::stop() {
  EXPECT_EQ(Program({TEMBRA_SIM_PROGRAM, "stop"}).end().status, 0);
  const Ended ended = program_.end();
  EXPECT_EQ(ended.status, 0) << ended.errors;
  return {linesBehind(kToZigbee, ended.output), linesBehind(kToZwave, ended.output)};
}

Ended SimRouter::add(const std::string& device, std::vector<std::string> arguments, Clock clock) {
  arguments.insert(arguments.begin(), "add");
  Program program(assocCommand(std::move(arguments)), clock);
  pressOnAdd(device);
  return program.end();
}

Ended SimRouter::remove(const std::string& device, std::vector<std::string> arguments, Clock clock) {
  arguments.insert(arguments.begin(), "remove");
  Program program(assocCommand(std::move(arguments)), clock);
  pressOnRemove(device);
  return program.end();
}

}  // namespace tembra::test
