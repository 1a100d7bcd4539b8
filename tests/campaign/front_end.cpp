#include "campaign/front_end.h"

#include <unistd.h>

#include <csignal>

namespace campaign {

FrontEnd::FrontEnd(const Step& step, const Operate& operate) : thread_([this, step, operate] { run(step, operate); }) {}

void FrontEnd::run(const Step& step, const Operate& operate) {
  status_ = static_cast<int>(operate(step, [this](int code) { seen_.push_back({worldClock()->now(), code}); }));
  ended_ = worldClock()->now();
  __atomic_store_n(&hasEnded_, 1, __ATOMIC_RELEASE);
}

bool FrontEnd::awaitEnd(std::optional<Time> moment) const {
  return worldClock()->wait({.deadline = moment, .descriptors = {}, .word = &hasEnded_, .value = 0});
}

void FrontEnd::interrupt() { kill(getpid(), SIGHUP); }

}  // namespace campaign
