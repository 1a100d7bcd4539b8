#include "support/program.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdlib>

namespace tembra::test {
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

// False at the end of the stream.
bool readSome(int& descriptor, std::string& text) {
  std::array<char, 4096> bytes{};
  const auto count = read(descriptor, bytes.data(), bytes.size());
  if (count > 0) text.append(bytes.data(), static_cast<std::size_t>(count));
  if (count > 0) return true;
  close(descriptor);
  descriptor = -1;
  return false;
}

}  // namespace

std::string Ended::sentence() const {
  const std::string lines = errors.substr(0, errors.find_last_not_of('\n') + 1);
  return lines.substr(lines.rfind('\n') + 1);
}

void becomeProgram(const std::vector<std::string>& command, Clock clock) {
  const std::string path = std::string(std::getenv("PATH")) + ":" + TEMBRA_PROGRAM_FOLDER;
  setenv("PATH", path.c_str(), 1);
  setenv("TEMBRA_LOG", "off", 1);
  unsetenv("TEMBRA_TIMELINE");
  if (clock == Clock::kFast) {
    setenv("LD_PRELOAD", TEMBRA_FAST_CLOCK, 1);
    const char* options = std::getenv("ASAN_OPTIONS");
    const std::string more = std::string(options == nullptr ? "" : options) + ":verify_asan_link_order=0";
    setenv("ASAN_OPTIONS", more.c_str(), 1);
  }
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

Program::Program(const std::vector<std::string>& command, Clock clock, Input input)
    : pid_(0), output_(-1), errors_(-1) {
  const Pipe output = makePipe();
  const Pipe errors = makePipe();
  pid_ = fork();
  if (pid_ == 0) {
    connectInput(input);
    dup2(output.write, STDOUT_FILENO);
    dup2(errors.write, STDERR_FILENO);
    becomeProgram(command, clock);
  }
  close(output.write);
  close(errors.write);
  output_ = output.read;
  errors_ = errors.read;
}

Program::~Program() {
  if (pid_ > 0) {
    kill(pid_, SIGKILL);
    static_cast<void>(waitForExit(pid_));
  }
  for (const int descriptor : {output_, errors_}) {
    if (descriptor >= 0) close(descriptor);
  }
}

void Program::signal(int number) const { kill(pid_, number); }

void Program::stopReading() {
  close(output_);
  output_ = -1;
}

bool Program::readMore() {
  if (output_ < 0 && errors_ < 0) return false;
  std::array<pollfd, 2> watched = {pollfd{output_, POLLIN, 0}, pollfd{errors_, POLLIN, 0}};
  poll(watched.data(), watched.size(), -1);
  if (watched[0].revents != 0) readSome(output_, outputSoFar_);
  if (watched[1].revents != 0) readSome(errors_, errorsSoFar_);
  return true;
}

// Where the text ends in the output; the end of everything, and a failed test, when it never comes.
std::size_t Program::endOf(const std::string& text) {
  std::size_t at = outputSoFar_.find(text, seen_);
  while (at == std::string::npos) {
    if (!readMore()) {
      ADD_FAILURE() << "never said: " << text << "\noutput: " << outputSoFar_ << "\nerrors: " << errorsSoFar_;
      return outputSoFar_.size();
    }
    at = outputSoFar_.find(text, seen_);
  }
  return at + text.size();
}

void Program::waitForAll(const std::vector<std::string>& texts) {
  std::size_t end = seen_;
  for (const std::string& text : texts) end = std::max(end, endOf(text));
  seen_ = end;
}

int Program::exitStatus() {
  const int status = waitForExit(pid_);
  pid_ = 0;
  return status;
}

Ended Program::end() {
  while (readMore()) {
  }
  return {exitStatus(), outputSoFar_, errorsSoFar_};
}

std::vector<std::string> assocCommand(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), TEMBRA_ASSOC_PROGRAM);
  return arguments;
}

Ended runAssoc(std::vector<std::string> arguments, Clock clock, Input input) {
  return Program(assocCommand(std::move(arguments)), clock, input).end();
}

}  // namespace tembra::test
