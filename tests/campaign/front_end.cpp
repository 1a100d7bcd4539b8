#include "campaign/front_end.h"

#include <unistd.h>

#include <csignal>

#include "campaign/kit_front_end.h"

namespace campaign {

FrontEnd::FrontEnd(const Step& step, KitFrontEnd& kit) : thread_([this, step, &kit] { run(step, kit); }) {}

void FrontEnd::run(const Step& step, KitFrontEnd& kit) {
  status_ = static_cast<int>(kit.operate(step));
  seen_ = kit.story().told;
  ended_ = worldClock()->now();
  __atomic_store_n(&hasEnded_, 1, __ATOMIC_RELEASE);
}

bool FrontEnd::awaitEnd(std::optional<Time> moment) const {
  return worldClock()->wait({.deadline = moment, .descriptors = {}, .word = &hasEnded_, .value = 0});
}

void FrontEnd::interrupt() { kill(getpid(), SIGHUP); }

}  // namespace campaign
