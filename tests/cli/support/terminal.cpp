#include "support/terminal.h"

#include <gtest/gtest.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <csignal>

namespace tembra::test {
namespace {

// The kernel drops what has been written and not yet read when Ctrl-C is typed, be it the answer to the Ctrl-C.
void keepOutputAtInterrupts() {
  termios settings{};
  tcgetattr(STDIN_FILENO, &settings);
  settings.c_lflag |= NOFLSH;
  tcsetattr(STDIN_FILENO, TCSANOW, &settings);
}

}  // namespace

Terminal::Terminal(const std::vector<std::string>& command, Clock clock, unsigned short columns) {
  const winsize size{24, columns, 0, 0};
  pid_ = forkpty(&terminal_, nullptr, nullptr, &size);
  if (pid_ != 0) return;
  keepOutputAtInterrupts();
  kit::becomeProgram(command, routerSettings(clock));
}

Terminal::~Terminal() {
  if (pid_ > 0) {
    kill(pid_, SIGKILL);
    static_cast<void>(kit::waitForExit(pid_));
  }
  close(terminal_);
}

bool Terminal::readMore() {
  std::array<char, 4096> bytes{};
  const auto count = read(terminal_, bytes.data(), bytes.size());
  if (count <= 0) return false;  // an error is how a terminal tells that the program has gone
  screen_.append(bytes.data(), static_cast<std::size_t>(count));
  return true;
}

void Terminal::waitFor(const std::string& text) {
  std::size_t at = screen_.find(text, seen_);
  while (at == std::string::npos) {
    if (!readMore()) FAIL() << "never said: " << text << "\nscreen: " << screen_;
    at = screen_.find(text, seen_);
  }
  seen_ = at + text.size();
}

void Terminal::type(const std::string& keys) const {
  EXPECT_EQ(write(terminal_, keys.data(), keys.size()), static_cast<ssize_t>(keys.size()));
}

void Terminal::resize(unsigned short columns) const {
  const winsize size{24, columns, 0, 0};
  EXPECT_EQ(ioctl(terminal_, TIOCSWINSZ, &size), 0);
}

int Terminal::end() {
  while (readMore()) {
  }
  const int status = kit::waitForExit(pid_);
  pid_ = 0;
  return status;
}

}  // namespace tembra::test
