// The programs under test, in the environment of a router.
#ifndef TEMBRA_TESTS_CLI_PROGRAM_H
#define TEMBRA_TESTS_CLI_PROGRAM_H

#include <string>
#include <vector>

#include "kit/program.h"

namespace tembra::test {

using kit::Ended;
using kit::Input;

/// Of the waits of a program under test: as they are, thirty and a hundred times faster.
enum class Clock { kReal, kThirtyfold, kFast };

[[nodiscard]] kit::Settings routerSettings(Clock clock);

/// Of a program whose waits pass a hundred times faster and of which a call fails, if one is named; see bent_calls.cpp.
[[nodiscard]] kit::Settings bentCalls(const std::string& failing = "");

class Program : public kit::Program {
 public:
  /// With --json the last line tells the exit status; the test fails when it does not, and does not see it.
  Ended end();

  explicit Program(const std::vector<std::string>& command, Clock clock = Clock::kReal, Input input = Input::kNothing)
      : kit::Program(command, routerSettings(clock), input) {}

  /// With settings that come before the router's.
  Program(const std::vector<std::string>& command, const kit::Settings& settings)
      : kit::Program(command, withRouters(settings)) {}

 private:
  static kit::Settings withRouters(kit::Settings settings) {
    settings.merge(routerSettings(Clock::kReal));
    return settings;
  }
};

/// The whole of tembra-assoc with these arguments.
[[nodiscard]] std::vector<std::string> assocCommand(std::vector<std::string> arguments);
[[nodiscard]] Ended runAssoc(std::vector<std::string> arguments, Clock clock = Clock::kReal,
                             Input input = Input::kNothing);

}  // namespace tembra::test

#endif
