#include "kit/program.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdlib>

namespace kit {
namespace {

constexpr int kNotStarted = 127;

struct Pipe {
  int read;
  int write;
};

Pipe makePipe() {
  std::array<int, 2> ends{};
  EXPECT_EQ(pipe2(ends.data(), O_CLOEXEC), 0);
  return {ends[0], ends[1]};
}

void connectInput(Input input) {
  close(STDIN_FILENO);
  if (input == Input::kNothing) open("/dev/null", O_RDONLY);
}

void readSome(int& descriptor, std::string& text) {
  std::array<char, 4096> bytes{};
  const auto count = read(descriptor, bytes.data(), bytes.size());
  if (count > 0) {
    text.append(bytes.data(), static_cast<std::size_t>(count));
    return;
  }
  close(descriptor);
  descriptor = -1;
}

void forgetOurSettings() {
  std::vector<std::string> names;
  for (char** entry = environ; *entry != nullptr; ++entry) {
    const std::string setting = *entry;
    if (setting.starts_with("TEMBRA_")) names.push_back(setting.substr(0, setting.find('=')));
  }
  for (const std::string& name : names) unsetenv(name.c_str());
}

}  // namespace

std::string Ended::sentence() const {
  const std::string lines = errors.substr(0, errors.find_last_not_of('\n') + 1);
  return lines.substr(lines.rfind('\n') + 1);
}

void becomeProgram(const std::vector<std::string>& command, const Settings& settings) {
  forgetOurSettings();
  for (const auto& [name, value] : settings) setenv(name.c_str(), value.c_str(), 1);
  std::vector<char*> arguments(command.size() + 1, nullptr);
  std::ranges::transform(command, arguments.begin(),
                         [](const std::string& each) { return const_cast<char*>(each.c_str()); });
  execv(arguments[0], arguments.data());
  _exit(kNotStarted);
}

int waitForExit(pid_t pid) {
  int status = 0;
  EXPECT_EQ(waitpid(pid, &status, 0), pid);
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

Program::Program(const std::vector<std::string>& command, const Settings& settings, Input input)
    : pid_(0), output_(-1), errors_(-1) {
  const Pipe output = makePipe();
  const Pipe errors = makePipe();
  pid_ = fork();
  if (pid_ == 0) {
    connectInput(input);
    dup2(output.write, STDOUT_FILENO);
    dup2(errors.write, STDERR_FILENO);
    becomeProgram(command, settings);
  }
  close(output.write);
  close(errors.write);
  output_ = output.read;
  errors_ = errors.read;
}

Program::~Program() {
  if (status_ < 0) {
    signal(SIGKILL);
    static_cast<void>(exitStatus());
  }
  for (const int descriptor : {output_, errors_}) {
    if (descriptor >= 0) close(descriptor);
  }
}

void Program::signal(int number) const { kill(pid_, number); }

bool Program::running() const {
  siginfo_t info{};
  return status_ < 0 && waitid(P_PID, static_cast<id_t>(pid_), &info, WEXITED | WNOHANG | WNOWAIT) == 0 &&
         info.si_pid == 0;
}

void Program::stopReading() {
  close(output_);
  output_ = -1;
}

// Returns false when nothing came in that time, or when nothing can come any more.
bool Program::readMore(int milliseconds) {
  if (output_ < 0 && errors_ < 0) return false;
  std::array<pollfd, 2> watched = {pollfd{output_, POLLIN, 0}, pollfd{errors_, POLLIN, 0}};
  if (poll(watched.data(), watched.size(), milliseconds) == 0) return false;
  if (watched[0].revents != 0) readSome(output_, outputSoFar_);
  if (watched[1].revents != 0) readSome(errors_, errorsSoFar_);
  return true;
}

const std::string& Program::output() {
  while (readMore(0)) {
  }
  return outputSoFar_;
}

const std::string& Program::errors() {
  static_cast<void>(output());
  return errorsSoFar_;
}

// Where the text ends in the output; npos when it never comes.
std::size_t Program::endOf(const std::string& text) {
  for (;;) {
    const std::size_t at = outputSoFar_.find(text, seen_);
    if (at != std::string::npos) return at + text.size();
    if (!readMore()) return at;
  }
}

bool Program::says(const std::string& text) {
  const std::size_t end = endOf(text);
  if (end == std::string::npos) return false;
  seen_ = end;
  return true;
}

void Program::waitForAll(const std::vector<std::string>& texts) {
  std::size_t last = seen_;
  for (const std::string& text : texts) {
    const std::size_t end = endOf(text);
    EXPECT_NE(end, std::string::npos) << "never said: " << text << "\noutput: " << outputSoFar_
                                      << "\nerrors: " << errorsSoFar_;
    last = std::max(last, std::min(end, outputSoFar_.size()));
  }
  seen_ = last;
}

int Program::exitStatus() {
  if (status_ < 0) status_ = waitForExit(pid_);
  return status_;
}

Ended Program::end() {
  while (readMore()) {
  }
  return {exitStatus(), outputSoFar_, errorsSoFar_};
}

}  // namespace kit
