// A run in a process of its own.
#ifndef TEMBRA_TESTS_CAMPAIGN_CHILD_H
#define TEMBRA_TESTS_CAMPAIGN_CHILD_H

#include <string>

#include "campaign/run.h"

namespace campaign {

struct Child {
  int status;            ///< as waitpid has it; 0 when all agreed
  std::string report;    ///< the disagreements, or else what was reached, a line each
  std::string timeline;  ///< the simulated router's
  std::string errors;    ///< everybody's standard error
};

Child playInChild(const Plan& plan);

}  // namespace campaign

#endif
