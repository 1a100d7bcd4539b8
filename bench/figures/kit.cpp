// What the front-end kit costs beside the library alone: the start of an operation, an event, a whole add.
#include <tembra/association.h>
#include <tembra/frontend.hpp>

#include <algorithm>
#include <atomic>
#include <stdexcept>
#include <vector>

#include "figures.h"
#include "figures/simulated_router.h"
#include "rig/clock.h"

namespace bench {
namespace {

// Between the library and the kit: when the library told the kit something the last time.
std::atomic<Clock::time_point> told{Clock::time_point{}};
void (*toKit)(AssocEvent*) = nullptr;

void passOn(AssocEvent* event) {
  told = Clock::now();
  toKit(event);
}

/// What was measured of adds through the kit, in seconds.
struct Adds {
  std::vector<double> starts;
  std::vector<double> events;
  std::vector<double> wholes;
};

void addThroughKit(tembra::Frontend& kit, Adds& adds) {
  const SimulatedRouter router;
  const Clock::time_point from = Clock::now();
  if (kit.add() != tembra::Result::ok) throw std::runtime_error("the kit does not start");
  while (const auto event = kit.next()) {
    if (event->as<tembra::Waiting>() != nullptr) {
      adds.starts.push_back(secondsSince(from));
      SimulatedRouter::press("metering-plug");
    }
    const bool isOfCallback = event->as<tembra::Answered>() != nullptr || event->as<tembra::Reading>() != nullptr;
    if (isOfCallback) adds.events.push_back(secondsSince(told));
    if (event->as<tembra::Found>() != nullptr && kit.finish(0, "Washing machine", "Bathroom") != tembra::Result::ok) {
      throw std::runtime_error("the kit does not finish");
    }
    if (const auto* ended = event->as<tembra::Ended>()) {
      if (ended->outcome != TEMBRA_DONE) throw std::runtime_error(ended->text);
      adds.wholes.push_back(secondsSince(from));
      return;
    }
  }
}

// The same without the kit.
double startAlone(TembraAssociation& assoc) {
  const SimulatedRouter router;
  const Clock::time_point from = Clock::now();
  if (assoc.checkAssocConnection() != 0) throw std::runtime_error("cannot open");
  assoc.addDevZigbeeZwave();
  const double seconds = secondsSince(from);
  assoc.sendCancelTo(cancel_both);
  assoc.closeAssocConnection();
  return seconds;
}

}  // namespace

void measureKit(const Effort& effort, Report& report) {
  TembraAssociation& assoc = *TembraAssociation::LCDAssocInit();
  Adds adds;
  std::vector<double> alone;
  const int rounds = std::min(effort.batches, 21);
  alone.reserve(static_cast<std::size_t>(rounds));
  for (int i = 0; i < rounds; ++i) alone.push_back(startAlone(assoc));
  {
    tembra::Frontend kit;
    toKit = assoc.eventCallback;
    assoc.registerAssocEventCB(passOn);
    for (int i = 0; i < rounds; ++i) addThroughKit(kit, adds);
    assoc.registerAssocEventCB(toKit);
  }
  const double start = medianOf(adds.starts);
  report.add({.number = 14,
              .what = "start of an operation through the kit; library alone",
              .unit = Unit::kMilliseconds,
              .value = start * 1e3,
              .limit = medianOf(alone) * 1e3});
  report.add({.number = 14,
              .what = "what the kit adds to it",
              .unit = Unit::kMilliseconds,
              .value = (start - medianOf(alone)) * 1e3,
              .limit = {},
              .most = 2});
  report.add({.number = 14,
              .what = "an event, from the callback to the kit's caller",
              .unit = Unit::kMicroseconds,
              .value = medianOf(adds.events) * 1e6,
              .limit = {},
              .most = 50});
  report.add({.number = 14,
              .what = "a whole simulated add through the kit",
              .unit = Unit::kMilliseconds,
              .value = medianOf(adds.wholes) * 1e3,
              .limit = {},
              .most = 5});
}

}  // namespace bench
