// What the library is asked to do while something fails.
#ifndef TEMBRA_TESTS_RELIABILITY_FAULT_SCENARIOS_H
#define TEMBRA_TESTS_RELIABILITY_FAULT_SCENARIOS_H

#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "kit/router.h"

/// How the database is before.
enum class File { kHealthy, kMissing, kRepairable, kHopeless };

struct Scenario {
  const char* name;
  File file;
  bool connected;                    // it begins with an open connection
  std::string (*run)(kit::Router&);  // its results, as words
  std::optional<kit::Call> failing;  // what fails in it anyway, once: so that what follows may fail, too
};

std::ostream& operator<<(std::ostream& stream, const Scenario& scenario);

const std::vector<Scenario>& faultScenarios();

/// The records of a healthy file.
inline constexpr int kRecordsOfAHealthyFile = 7;

/// Puts the database and the service where every scenario begins.
void prepare(kit::Router& router, const Scenario& scenario);

/// Runs it; the outcome is its results and then the codes of the events.
std::string outcomeOf(kit::Router& router, const Scenario& scenario);

/// A whole add on a healthy database: opens, hands over, closes. The words of its outcome.
std::string addOneNode(kit::Router& router);

#endif
