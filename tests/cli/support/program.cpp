#include "support/program.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace tembra::test {

kit::Settings routerSettings(Clock clock) {
  kit::Settings settings = {{"PATH", std::string(std::getenv("PATH")) + ":" + TEMBRA_PROGRAM_FOLDER},
                            {"TEMBRA_LOG", "off"},
                            {"TEMBRA_WATCH_PATH", "/tmp/front-ends/socket"}};
  if (clock == Clock::kThirtyfold) settings["TEMBRA_SPEED"] = "30";
  if (clock != Clock::kReal) settings.merge(bentCalls());
  return settings;
}

kit::Settings bentCalls(const std::string& failing) {
  const char* options = std::getenv("ASAN_OPTIONS");
  return {{"LD_PRELOAD", TEMBRA_HASTE ":" TEMBRA_BENT_CALLS},
          {"TEMBRA_FAILING", failing},
          {"TEMBRA_SPEED", "100"},
          {"ASAN_OPTIONS", std::string(options == nullptr ? "" : options) + ":verify_asan_link_order=0"}};
}

Ended Program::end() {
  constexpr char kBeginning[] = R"({"schema":1,"event":"exit","status":)";
  Ended ended = kit::Program::end();
  const std::size_t last = ended.output.rfind(kBeginning);
  if (last == std::string::npos) return ended;
  EXPECT_EQ(ended.output.substr(last), kBeginning + std::to_string(ended.status) + "}\n");
  ended.output.erase(last);
  return ended;
}

std::vector<std::string> assocCommand(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), TEMBRA_ASSOC_PROGRAM);
  return arguments;
}

Ended runAssoc(std::vector<std::string> arguments, Clock clock, Input input) {
  return Program(assocCommand(std::move(arguments)), clock, input).end();
}

}  // namespace tembra::test
