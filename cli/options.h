// What every command is told by the command line.
#ifndef TEMBRA_CLI_OPTIONS_H
#define TEMBRA_CLI_OPTIONS_H

#include <string>

namespace tembra::cli {

struct Options {
  std::string role = "lcd";
  std::string database;   ///< path of the device database; empty: the library's own
  std::string watchPath;  ///< where other processes watch and cancel
  bool json = false;
  bool yes = false;
  bool verbose = false;
  bool timeline = false;

  /// Whether a person is there to be asked: a terminal, and neither --yes nor --json.
  [[nodiscard]] bool mayAsk() const;

  /// Whether a program is there to be asked: --json without --yes.
  [[nodiscard]] bool mayAskProgram() const { return json && !yes; }
};

}  // namespace tembra::cli

#endif
