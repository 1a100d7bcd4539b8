#include "support/program.h"

#include <cstdlib>

namespace tembra::test {

kit::Settings routerSettings(Clock clock) {
  kit::Settings settings = {{"PATH", std::string(std::getenv("PATH")) + ":" + TEMBRA_PROGRAM_FOLDER},
                            {"TEMBRA_LOG", "off"}};
  if (clock == Clock::kFast) settings.merge(bentCalls());
  return settings;
}

kit::Settings bentCalls(const std::string& failing) {
  const char* options = std::getenv("ASAN_OPTIONS");
  return {{"LD_PRELOAD", TEMBRA_HASTE ":" TEMBRA_BENT_CALLS},
          {"TEMBRA_FAILING", failing},
          {"TEMBRA_SPEED", "100"},
          {"ASAN_OPTIONS", std::string(options == nullptr ? "" : options) + ":verify_asan_link_order=0"}};
}

std::vector<std::string> assocCommand(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), TEMBRA_ASSOC_PROGRAM);
  return arguments;
}

Ended runAssoc(std::vector<std::string> arguments, Clock clock, Input input) {
  return Program(assocCommand(std::move(arguments)), clock, input).end();
}

}  // namespace tembra::test
