// The Hue bridges that the home has.
#ifndef TEMBRA_CLI_HUE_LIST_H
#define TEMBRA_CLI_HUE_LIST_H

#include "commands.h"

namespace tembra::cli {

/// Adds `list` to the commands of `hue`.
void declareHueList(CLI::App& hue, Action& action);

}  // namespace tembra::cli

#endif
