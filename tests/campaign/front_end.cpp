#include "campaign/front_end.h"

#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <iostream>
#include <streambuf>
#include <utility>

#include "cli/event_inbox.h"

// The front end's own main function; the linker calls the tests' instead of it, see CMakeLists.txt.
extern "C" int __real_main(int argc, char** argv);  // NOLINT(bugprone-reserved-identifier): the linker's name for it

namespace campaign {
namespace {

// Standard output in place of the front end's terminal.
class Transcript : public std::streambuf {
 public:
  explicit Transcript(std::vector<Said>& said) : said_(said), before_(std::cout.rdbuf(this)) {}
  ~Transcript() override { std::cout.rdbuf(before_); }
  Transcript(const Transcript&) = delete;
  Transcript& operator=(const Transcript&) = delete;

 private:
  int_type overflow(int_type letter) override {
    if (letter == '\n') {
      said_.push_back({worldClock()->now(), std::exchange(line_, {})});
    } else {
      line_.push_back(static_cast<char>(letter));
    }
    return letter;
  }

  std::vector<Said>& said_;
  std::streambuf* before_;
  std::string line_;
};

}  // namespace

FrontEnd::FrontEnd(std::vector<std::string> arguments) : arguments_(std::move(arguments)), thread_([this] { run(); }) {}

void FrontEnd::run() {
  std::vector<char*> pointers;
  for (std::string& argument : arguments_) pointers.push_back(argument.data());
  pointers.push_back(nullptr);
  {
    const Transcript transcript(said_);
    status_ = __real_main(static_cast<int>(arguments_.size()), pointers.data());
  }
  // A process of its own would take with it what it did not fetch.
  while (tembra::cli::fetchEvent()) {
  }
  ended_ = worldClock()->now();
  __atomic_store_n(&hasEnded_, 1, __ATOMIC_RELEASE);
}

bool FrontEnd::awaitEnd(std::optional<Time> moment) const {
  return worldClock()->wait({.deadline = moment, .descriptors = {}, .word = &hasEnded_, .value = 0});
}

void FrontEnd::interrupt() { kill(getpid(), SIGHUP); }

}  // namespace campaign
