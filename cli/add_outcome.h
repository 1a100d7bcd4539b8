// How an add can end badly, in words.
#ifndef TEMBRA_CLI_ADD_OUTCOME_H
#define TEMBRA_CLI_ADD_OUTCOME_H

#include "operation.h"

namespace tembra::cli {

/// Throws Failure (kFailed) when the event says that the add is over.
void throwIfAddEnded(Operation& operation, const HeardEvent& heard);

}  // namespace tembra::cli

#endif
