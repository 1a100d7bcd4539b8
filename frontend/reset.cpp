// Resetting radio networks, which the library sleeps through.
#include <algorithm>

#include "operations.h"

namespace tembra::frontend {
namespace {

using std::chrono::seconds;

// The library waits 7 seconds for the radios, and 2 seconds between the two commands to the ZigBee server.
int stepsOf(int what) { return what == reset_zwave ? 7 : 9; }

void tellStep(Session& session, int number, int all) {
  auto step = sized<tembra_step>();
  step.done = number;
  step.all = all;
  session.tell(TEMBRA_EVENT_STEP, step);
}

}  // namespace

void resetRadios(Session& session, int what) {
  if (what == reset_zigbee) session.requireServer(SERVER_ZIGBEE);
  if (what == reset_zwave) session.requireServer(SERVER_ZWAVE);
  if (what >= reset_both) session.requireRadios();
  if (what == reset_both_and_remove_all) session.requireServer(SERVER_HA);
  session.open();
  const int all = stepsOf(what);
  session.enter(TEMBRA_PHASE_RESETTING, seconds(all));
  TembraAssociation& service = session.service();
  int told = 0;
  tellStep(session, told, all);
  const auto began = Clock::now();
  const auto reset = [&service, what] {
    service.doResetFor(static_cast<reset_type>(what));
    return true;
  };
  const auto tellProgress = [&] {
    const auto passed = std::chrono::duration_cast<seconds>(Clock::now() - began).count();
    const int now = std::min(static_cast<int>(passed), all - 1);
    if (now > told) tellStep(session, told = now, all);
  };
  session.send([&] { session.call(reset, tellProgress); });
  tellStep(session, all, all);
  throw done();
}

}  // namespace tembra::frontend
