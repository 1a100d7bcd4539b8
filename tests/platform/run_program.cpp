#include "run_program.h"

#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <sstream>
#include <stdexcept>
#include <system_error>

namespace tembra::test {

namespace {

// Collects what a program writes on one descriptor, without a pipe that could fill up.
class Collected {
 public:
  Collected() : fd_(memfd_create("output", MFD_CLOEXEC)) {}
  ~Collected() { close(fd_); }
  Collected(const Collected&) = delete;
  Collected& operator=(const Collected&) = delete;
  [[nodiscard]] int fd() const { return fd_; }
  [[nodiscard]] std::string text() const {
    std::string text;
    std::array<char, 4096> chunk{};
    off_t at = 0;
    for (ssize_t got = 0; (got = pread(fd_, chunk.data(), chunk.size(), at)) > 0; at += got) {
      text.append(chunk.data(), static_cast<std::size_t>(got));
    }
    return text;
  }

 private:
  int fd_;
};

std::vector<std::string> environmentWith(const std::map<std::string, std::string>& settings) {
  std::vector<std::string> environment;
  for (char** entry = environ; *entry != nullptr; ++entry) {
    if (std::strncmp(*entry, "TEMBRA_", std::strlen("TEMBRA_")) != 0) environment.emplace_back(*entry);
  }
  for (const auto& [name, value] : settings) environment.push_back(std::string(name).append("=").append(value));
  return environment;
}

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  pointers.reserve(texts.size() + 1);
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

int waitFor(pid_t program) {
  int status = 0;
  if (waitpid(program, &status, 0) != program) throw std::runtime_error("waitpid failed");
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

class TemporaryFolder {
 public:
  TemporaryFolder() : path_(testing::TempDir() + "tembra-XXXXXX") {
    if (mkdtemp(path_.data()) == nullptr) throw std::runtime_error(path_ + ": cannot be made");
  }
  ~TemporaryFolder() {
    std::error_code failure;
    std::filesystem::remove_all(path_, failure);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  [[nodiscard]] std::filesystem::path path() const { return path_; }

 private:
  std::string path_;
};

}  // namespace

Outcome runProgram(const std::vector<std::string>& command, const std::map<std::string, std::string>& settings) {
  const Collected out;
  const Collected err;
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, out.fd(), STDOUT_FILENO);
  posix_spawn_file_actions_adddup2(&actions, err.fd(), STDERR_FILENO);
  std::vector<std::string> arguments = command;
  std::vector<std::string> environment = environmentWith(settings);
  pid_t program = 0;
  const int failure = posix_spawn(&program, arguments.front().c_str(), &actions, nullptr, pointersTo(arguments).data(),
                                  pointersTo(environment).data());
  posix_spawn_file_actions_destroy(&actions);
  if (failure != 0) throw std::runtime_error(command.front() + ": " + std::strerror(failure));
  const int status = waitFor(program);
  return {status, out.text(), err.text()};
}

std::string freshPath(const std::string& name) {
  static const TemporaryFolder folder;
  std::filesystem::remove(folder.path() / name);
  return folder.path() / name;
}

std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

}  // namespace tembra::test
