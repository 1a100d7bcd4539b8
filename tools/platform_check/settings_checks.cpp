#include <sys/prctl.h>
#include <sys/wait.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "platform_check/checks.h"

namespace tembra::platform_check {
namespace {

constexpr int kNotFound = 127;  // what a shell tells of a command
constexpr std::size_t kReadByTheService = 10;

// What the service reads stands in front: it takes no notice of anything behind a number. Blanks alone count as 0.
bool isNumberOrNothing(const std::string& text) {
  char* end = nullptr;
  std::strtol(text.c_str(), &end, 10);
  return end != text.c_str() || text.find_first_not_of(" \t\r\n") == std::string::npos;
}

// As the service asks, through the shell. What the command leaves behind becomes a child of this process.
void checkNvramGet(Trial& trial) {
  using Clock = std::chrono::steady_clock;
  prctl(PR_SET_CHILD_SUBREAPER, 1);
  trial.tries("nvram_get 2860 MeshSlaveID");
  const auto start = Clock::now();
  FILE* const answer = popen("nvram_get 2860 MeshSlaveID", "r");
  trial.expects(answer != nullptr, "that a shell starts", "no process");
  char line[kReadByTheService] = {};
  if (std::fgets(line, sizeof line, answer) == nullptr) line[0] = '\0';
  const int status = pclose(answer);
  const auto taken = Clock::now() - start;
  const bool isThere = !WIFEXITED(status) || WEXITSTATUS(status) != kNotFound;
  trial.expects(isThere, "a command of that name in PATH", "none");
  trial.expects(isNumberOrNothing(line), "a decimal number, or no output, which counts as 0", quoted(line));
  trial.expects(waitpid(-1, nullptr, WNOHANG) == -1, "no process that it leaves behind", "one");
  trial.prefers(taken < std::chrono::seconds(1), "an answer at once, as opening the connection waits for it",
                "one after more than a second");
}

}  // namespace

std::vector<Check> settingsChecks() {
  return {
      {"nvram_get", "nvram_get 2860 MeshSlaveID gives a number or nothing, and leaves nothing behind", checkNvramGet}};
}

}  // namespace tembra::platform_check
