#include "cli/options.h"

#include <unistd.h>

namespace tembra::cli {

bool Options::mayAsk() const { return !yes && !json && isatty(STDIN_FILENO) == 1 && isatty(STDOUT_FILENO) == 1; }

}  // namespace tembra::cli
