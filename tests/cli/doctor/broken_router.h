// A router that is broken in one way, and what the doctor says of it.
#ifndef TEMBRA_TESTS_CLI_BROKEN_ROUTER_H
#define TEMBRA_TESTS_CLI_BROKEN_ROUTER_H

#include <memory>
#include <nlohmann/json.hpp>
#include <ostream>
#include <set>
#include <string>
#include <vector>

#include "support/program.h"
#include "support/sim_router.h"

namespace tembra::test {

/// What must live while the doctor looks: a lock, a listener, a program.
using Kept = std::shared_ptr<void>;

/// For what is broken by settings and options alone.
inline Kept nothing() { return nullptr; }

enum class Others { kNone, kMore };

struct BrokenRouter {
  const char* name;
  Kept (*make)();             ///< breaks it
  std::set<std::string> ids;  ///< of the findings
  const char* holds;          ///< stands in the first finding
  std::vector<std::string> arguments{};
  kit::Settings settings{};
  std::vector<std::string> simulator{};  ///< its options
  Others others = Others::kNone;         ///< whether what is broken shows elsewhere, too
};

void PrintTo(const BrokenRouter& row, std::ostream* out);

/// Settings of a router that is well.
[[nodiscard]] kit::Settings wellSettings();

/// The objects that `doctor --json` prints.
[[nodiscard]] std::vector<nlohmann::json> checksOf(const kit::Ended& doctor);

/// `doctor --json` with these arguments and settings, and those of a router that is well.
[[nodiscard]] kit::Ended doctorOf(const std::vector<std::string>& more, kit::Settings settings);

/// Everything that a check says.
[[nodiscard]] std::string textOf(const nlohmann::json& check);

/// The doctor of a router with its daemons, a database and settings; of one without daemons where the options are
/// "none".
void expectFindings(const BrokenRouter& row);

}  // namespace tembra::test

#endif
