// A program under test at a terminal, with somebody who reads and types.
#ifndef TEMBRA_TESTS_CLI_TERMINAL_H
#define TEMBRA_TESTS_CLI_TERMINAL_H

#include <sys/types.h>

#include <string>
#include <vector>

#include "support/program.h"

namespace tembra::test {

class Terminal {
 public:
  /// A terminal of so many columns; 0: it does not tell.
  explicit Terminal(const std::vector<std::string>& command, Clock clock = Clock::kReal, unsigned short columns = 0);
  ~Terminal();
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;

  /// Reads until `text` appears behind what was read for before; fails the test when it never does.
  void waitFor(const std::string& text);

  /// Types keys; "\r" is Enter, "\x03" Ctrl-C, "\x04" Ctrl-D.
  void type(const std::string& keys) const;

  void resize(unsigned short columns) const;

  /// Exit status, after everything was read.
  [[nodiscard]] int end();

  [[nodiscard]] const std::string& screen() const { return screen_; }

 private:
  bool readMore();

  int terminal_ = -1;
  pid_t pid_;
  std::string screen_;
  std::size_t seen_ = 0;
};

}  // namespace tembra::test

#endif
