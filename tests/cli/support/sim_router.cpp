#include "support/sim_router.h"

#include <gtest/gtest.h>

namespace tembra::test {
namespace {

std::vector<std::string> simCommand(const std::vector<std::string>& options) {
  std::vector<std::string> command = {TEMBRA_SIM_PROGRAM, "run", "--timeline", "--latency", "5"};
  command.insert(command.end(), options.begin(), options.end());
  return command;
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
  waitFor("library -> Z-Wave server   add a device");
  press(device);
}

void SimRouter::pressOnRemove(const std::string& device) {
  waitFor("library -> Z-Wave server   remove a device");
  press(device);
}

void SimRouter::stop() {
  EXPECT_EQ(Program({TEMBRA_SIM_PROGRAM, "stop"}).end().status, 0);
  const Ended ended = program_.end();
  EXPECT_EQ(ended.status, 0) << ended.errors;
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
