#include "campaign/child.h"

#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>

namespace campaign {
namespace {

constexpr unsigned kLongestRealSeconds = 100;

// A file in memory that a child process writes and its parent reads.
class Paper {
 public:
  explicit Paper(const char* name) : descriptor_(memfd_create(name, MFD_CLOEXEC)) {}
  ~Paper() { close(descriptor_); }
  Paper(const Paper&) = delete;
  Paper& operator=(const Paper&) = delete;

  void standInFor(int stream) const { dup2(descriptor_, stream); }
  void write(const std::string& text) const { static_cast<void>(::write(descriptor_, text.data(), text.size())); }
  [[nodiscard]] std::string text() const {
    std::string all;
    std::array<char, 4096> part{};
    lseek(descriptor_, 0, SEEK_SET);
    for (ssize_t size = 0; (size = read(descriptor_, part.data(), part.size())) > 0;) {
      all.append(part.data(), static_cast<std::size_t>(size));
    }
    return all;
  }

 private:
  int descriptor_;
};

struct Papers {
  Paper report{"report"};
  Paper timeline{"timeline"};
  Paper errors{"errors"};
};

[[noreturn]] void playHere(const Plan& plan, const Papers& papers) {
  papers.timeline.standInFor(STDOUT_FILENO);
  papers.errors.standInFor(STDERR_FILENO);
  alarm(kLongestRealSeconds);
  const Outcome outcome = play(plan);
  const bool agrees = outcome.disagreements.empty();
  for (const std::string& line : agrees ? outcome.reached : outcome.disagreements) papers.report.write(line + "\n");
  std::fflush(stdout);
  _exit(agrees ? 0 : 1);
}

}  // namespace

Child playInChild(const Plan& plan) {
  const Papers papers;
  const pid_t child = fork();
  if (child == 0) playHere(plan, papers);
  int status = 0;
  waitpid(child, &status, 0);
  return {status, papers.report.text(), papers.timeline.text(), papers.errors.text()};
}

}  // namespace campaign
