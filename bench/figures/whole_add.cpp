// A whole add against the simulated router: from opening the connection until the new device is in the database.
#include <depot.h>
#include <tembra/association.h>
#include <tembra/globals.h>

#include <algorithm>
#include <cstdlib>
#include <semaphore>
#include <stdexcept>

#include "figures.h"
#include "figures/simulated_router.h"
#include "rig/outside.h"

namespace bench {
namespace {

std::counting_semaphore<> described{0};

void onEvent(AssocEvent* event) {
  const Outside outside;
  if (event->code == EVENT_SELECT_TYPE) described.release();
}

// A front end's call: its time is the library's own as far as it is not spent outside.
template <typename Call>
auto inside(Call call) {
  const Inside inside;
  return call();
}

bool isStored(int id) {
  DEPOT* depot = dpopen(DBName, DP_OREADER, -1);
  if (depot == nullptr) return false;
  char* record = dpget(depot, std::to_string(id).c_str(), -1, 0, -1, nullptr);
  std::free(record);
  dpclose(depot);
  return record != nullptr;
}

void awaitStored(int id) {
  const Clock::time_point from = Clock::now();
  while (!isStored(id)) {
    if (secondsSince(from) > 10) throw std::runtime_error("the new device never gets into the database");
  }
}

// The add; afterwards the connection is still open.
double addOne(TembraAssociation& assoc) {
  char name[] = "Washing machine";
  char location[] = "Bathroom";
  const Clock::time_point from = Clock::now();
  if (inside([&] { return assoc.checkAssocConnection(); }) != 0) throw std::runtime_error("cannot open");
  inside([&] { assoc.addDevZigbeeZwave(); });
  SimulatedRouter::press("metering-plug");
  described.acquire();
  inside([&] { assoc.setDevType(DEVTYPE_METER_SWITCH); });
  inside([&] { assoc.setDevName(name); });
  inside([&] { assoc.setDevLocation(location); });
  if (inside([&] { return assoc.addingDone(); }) != 0) throw std::runtime_error("the add cannot be finished");
  awaitStored(DevId);
  return secondsSince(from);
}

double addInNewHome(TembraAssociation& assoc, std::vector<double>& own) {
  const SimulatedRouter router;
  own_code::start();
  const double seconds = addOne(assoc);
  own_code::stop();
  own.push_back(own_code::seconds());
  assoc.closeAssocConnection();
  return seconds;
}

}  // namespace

void measureWholeAdd(const Effort& effort, Report& report) {
  TembraAssociation& assoc = *TembraAssociation::LCDAssocInit();
  assoc.registerAssocEventCB(onEvent);
  std::vector<double> own;
  Comparison comparison(effort);
  comparison.measured("add", std::min(effort.batches, 5), [&] { return addInNewHome(assoc, own); });
  const double seconds = comparison.run().at("add");
  assoc.registerAssocEventCB(nullptr);
  report.add({.number = 7,
              .what = "a whole simulated add",
              .unit = Unit::kMilliseconds,
              .value = seconds * 1e3,
              .limit = {},
              .most = 5});
  report.add({.number = 7,
              .what = "the library's own code in it",
              .unit = Unit::kMicroseconds,
              .value = medianOf(own) * 1e6,
              .limit = {},
              .most = 100});
}

}  // namespace bench
