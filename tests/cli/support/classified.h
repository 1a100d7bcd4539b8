// A device description given to the program, from a file and through standard input.
#ifndef TEMBRA_TESTS_CLI_CLASSIFIED_H
#define TEMBRA_TESTS_CLI_CLASSIFIED_H

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

#include "support/program.h"

namespace tembra::test {

/// How `classify` ends with this description in a file.
[[nodiscard]] Ended classify(const std::string& description, std::vector<std::string> options = {});

/// The same with the description on standard input.
[[nodiscard]] Ended classifyInput(const std::string& description);

/// What `classify --json` answers; the test fails when it refuses.
[[nodiscard]] nlohmann::json classifiedJson(const std::string& description);

}  // namespace tembra::test

#endif
