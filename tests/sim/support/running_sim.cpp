#include "support/running_sim.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "sim/control/control_client.h"

namespace tembra::sim::test {
namespace {

std::vector<std::string> runCommand(const std::vector<std::string>& options) {
  std::vector<std::string> command{TEMBRA_SIM_PROGRAM, "run", "--latency", "5"};
  command.insert(command.end(), options.begin(), options.end());
  return command;
}

void aMoment() { std::this_thread::sleep_for(std::chrono::milliseconds(2)); }

}  // namespace

kit::Ended simulator(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), TEMBRA_SIM_PROGRAM);
  return kit::Program(arguments).end();
}

RunningSim::RunningSim(const std::vector<std::string>& options)
    : program_(runCommand(options)), ready_(program_.says("tembra-sim: ready\n")) {}

Outcome RunningSim::ask(const std::string& request) const { return sim::ask(kControl, request); }

void RunningSim::tell(const std::string& request) const {
  const Outcome outcome = ask(request);
  EXPECT_TRUE(outcome.done) << request << ": " << outcome.text;
}

bool RunningSim::idle() const {
  const std::string status = ask("status").text;
  const auto says = [&status](const char* line) { return status.find(line) != std::string::npos; };
  return says("Z-Wave server: idle\n") && says("ZigBee server: idle\n") && says("Hue server: idle\n") &&
         says("Nest server: idle,");
}

void RunningSim::awaitIdle() const {
  while (!idle()) aMoment();
}

int RunningSim::stop() {
  tell("stop");
  return program_.end().status;
}

}  // namespace tembra::sim::test
