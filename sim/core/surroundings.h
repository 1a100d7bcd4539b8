// What every daemon needs of the program around it.
#ifndef TEMBRA_SIM_CORE_SURROUNDINGS_H
#define TEMBRA_SIM_CORE_SURROUNDINGS_H

#include "sim/core/event_loop.h"
#include "sim/core/happenings.h"
#include "sim/core/journal.h"

namespace tembra::sim {

struct Surroundings {
  EventLoop& loop;
  Journal& journal;
  Happenings& happenings;
};

}  // namespace tembra::sim

#endif
