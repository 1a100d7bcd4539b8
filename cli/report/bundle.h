// What a report is made of.
#ifndef TEMBRA_CLI_BUNDLE_H
#define TEMBRA_CLI_BUNDLE_H

#include <string>
#include <vector>

#include "cli/context.h"
#include "cli/report/tar_file.h"

namespace tembra::cli::report {

struct Wanted {
  std::string recording;          ///< a file, or empty
  std::vector<std::string> logs;  ///< files
  bool withNames = false;
};

/// Looks at the router, and puts stand-ins for what is nobody's business unless names are wanted. Throws Failure and
/// Interrupted.
[[nodiscard]] std::vector<Part> makeBundle(const Context& context, const Wanted& wanted);

}  // namespace tembra::cli::report

#endif
