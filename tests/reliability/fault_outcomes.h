// What the failures give.
#ifndef TEMBRA_TESTS_RELIABILITY_FAULT_OUTCOMES_H
#define TEMBRA_TESTS_RELIABILITY_FAULT_OUTCOMES_H

#include <map>
#include <set>
#include <string>

/// By the function that fails ("malloc": any allocation), the outcomes of a scenario that differ from its usual one,
/// which stands at "".
using FaultOutcomes = std::map<std::string, std::set<std::string>>;

FaultOutcomes expectedOutcomes(const std::string& scenario);

#endif
