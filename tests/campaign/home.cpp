#include "campaign/home.h"

#include <unistd.h>

#include <cstdio>
#include <exception>

#include "campaign/database.h"
#include "campaign/world_clock.h"
#include "sim/control/control_client.h"
#include "sim/router.h"

namespace campaign {
namespace {

constexpr char kControl[] = "/tmp/tembra-sim.sock";

}  // namespace

Home::Home(int latencyMs) : router_([this, latencyMs] { run(latencyMs); }) {
  // The clock moves on as soon as the router waits for requests, and not before.
  worldClock()->sleepUntil(worldClock()->now() + kMillisecond);
}

void Home::run(int latencyMs) {
  try {
    tembra::sim::RouterOptions options;
    options.database = kDatabasePath;
    options.authorisation = kAuthorisationPath;
    options.latencyMs = latencyMs;
    options.catalogue = TEMBRA_CATALOGUE;
    options.control = kControl;
    options.timeline = true;
    status_ = tembra::sim::Router(options).run();
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "campaign: the simulated router fails: %s\n", failure.what());
  }
}

tembra::sim::Outcome Home::ask(const std::string& request) { return tembra::sim::ask(kControl, request); }

int Home::stop() {
  ask("stop");
  router_.join();
  return status_;
}

}  // namespace campaign
