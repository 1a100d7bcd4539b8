// What every command works with.
#ifndef TEMBRA_CLI_CONTEXT_H
#define TEMBRA_CLI_CONTEXT_H

#include "cli/dialogue/attention.h"
#include "cli/display/display.h"
#include "cli/options.h"

namespace tembra::cli {

struct Context {
  const Options& options;
  Attention& attention;
  Display& display;
};

}  // namespace tembra::cli

#endif
