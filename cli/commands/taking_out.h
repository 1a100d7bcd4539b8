// A device that joined a radio network, but is not in the device list.
#ifndef TEMBRA_CLI_TAKING_OUT_H
#define TEMBRA_CLI_TAKING_OUT_H

#include "cli/dialogue/dialogue.h"

namespace tembra::cli {

/// The device leaves its radio network when its button is pressed. Throws what Dialogue::run throws.
void takeOut(Dialogue& dialogue);

}  // namespace tembra::cli

#endif
