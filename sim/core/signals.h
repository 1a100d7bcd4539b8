// The signals that stop a program in good order.
#ifndef TEMBRA_SIM_CORE_SIGNALS_H
#define TEMBRA_SIM_CORE_SIGNALS_H

#include "platform/descriptor.h"

namespace tembra::sim {

/// Readable when somebody wants the program to stop. A reader of the timeline that leaves is no reason to stop.
[[nodiscard]] Descriptor stopSignals();

}  // namespace tembra::sim

#endif
