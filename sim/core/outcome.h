// How a request to the simulator ended, in words.
#ifndef TEMBRA_SIM_CORE_OUTCOME_H
#define TEMBRA_SIM_CORE_OUTCOME_H

#include <string>

namespace tembra::sim {

struct Outcome {
  bool done;
  std::string text;
};

}  // namespace tembra::sim

#endif
