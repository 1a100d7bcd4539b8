// A file of the simulator's scenarios.
#include "sim/scenario/scenario.h"

#include <cstdint>
#include <stdexcept>

#include "support/invariant.h"
#include "support/text_file.h"

namespace {

constexpr std::chrono::hours kLongest{365 * 24};

void checkStep(const tembra::sim::ScenarioStep& step) {
  fuzz::require(!step.request.empty(), "a step does something");
  fuzz::require(step.after.count() >= 0 && step.after <= kLongest, "a step does not wait for ever");
  fuzz::require(!step.at || (step.at->count() >= 0 && *step.at <= kLongest), "a step has a moment that comes");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const fuzz::TextFile file("scenario.json", data, size);
  try {
    const auto exists = [](const std::string& device) { return device == "siren"; };
    for (const auto& step : tembra::sim::loadScenario("scenario.json", exists)) checkStep(step);
  } catch (const std::runtime_error& refusal) {
    fuzz::require(*refusal.what() != '\0', "a refusal says why");
  }
  return 0;
}
