#include "support/program.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <fstream>
#include <iterator>

namespace tembra::sim::test {
namespace {

std::string freshFile(const std::string& kind) {
  static int count = 0;
  return "/tmp/program-" + std::to_string(++count) + "." + kind;
}

std::string contentOf(const std::string& file) {
  std::ifstream stream(file);
  return {std::istreambuf_iterator<char>(stream), {}};
}

void redirect(int descriptor, const std::string& file) {
  constexpr mode_t ownerOnly = 0600;
  dup2(open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, ownerOnly), descriptor);
}

[[noreturn]] void become(const std::vector<std::string>& command) {
  std::vector<char*> arguments;
  arguments.reserve(command.size() + 1);
  for (const std::string& argument : command) arguments.push_back(const_cast<char*>(argument.c_str()));
  arguments.push_back(nullptr);
  execv(arguments.front(), arguments.data());
  _exit(126);
}

}  // namespace

Program::Program(const std::vector<std::string>& command)
    : outputFile_(freshFile("out")), errorFile_(freshFile("err")) {
  process_ = fork();
  if (process_ != 0) return;
  redirect(STDOUT_FILENO, outputFile_);
  redirect(STDERR_FILENO, errorFile_);
  become(command);
}

Program::~Program() {
  if (!running()) return;
  signal(SIGKILL);
  wait();
}

void Program::signal(int number) const { kill(process_, number); }

int Program::wait() {
  if (status_ < 0) {
    int status = 0;
    waitpid(process_, &status, 0);
    status_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  }
  return status_;
}

bool Program::running() {
  siginfo_t info{};
  return status_ < 0 && waitid(P_PID, static_cast<id_t>(process_), &info, WEXITED | WNOHANG | WNOWAIT) == 0 &&
         info.si_pid == 0;
}

std::string Program::output() const { return contentOf(outputFile_); }
std::string Program::errors() const { return contentOf(errorFile_); }

Result runToEnd(const std::vector<std::string>& command) {
  Program program(command);
  const int status = program.wait();
  return {status, program.output(), program.errors()};
}

}  // namespace tembra::sim::test
