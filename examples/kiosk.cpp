// A front end that lives long, around one epoll loop: a touch screen, say. Each line of standard input asks for
// something: add, remove, discover, link MAC, account, devices, state, cancel. Operations run one after the other, in
// the order in which they were asked for. Each event goes to standard output as one line of JSON. A device keeps what
// is proposed.
#include <sys/epoll.h>
#include <unistd.h>
#include <tembra/frontend.hpp>

#include <cstdio>
#include <deque>
#include <string>

namespace {

void say(const std::string& line) {
  std::puts(line.c_str());
  std::fflush(stdout);
}

class Kiosk {
 public:
  explicit Kiosk(const tembra::Options& options) : loop_(epoll_create1(EPOLL_CLOEXEC)), kit_(options) {
    watch(STDIN_FILENO);
    watch(kit_.descriptor());
  }
  ~Kiosk() { close(loop_); }
  Kiosk(const Kiosk&) = delete;
  Kiosk& operator=(const Kiosk&) = delete;

  // Until standard input has ended and everything is done.
  void run() {
    constexpr int kRetry = 100;
    while (kit_ && (isOpen_ || runs_ || !operations_.empty())) {
      // A library call that a cancel left behind may still run: its end is no event, so the next operation tries again.
      if (!runs_ && !operations_.empty()) startNext();
      epoll_event ready{};
      if (epoll_wait(loop_, &ready, 1, runs_ || operations_.empty() ? -1 : kRetry) < 1) continue;
      ready.data.fd == STDIN_FILENO ? readRequests() : hearEvents();
    }
  }

 private:
  void watch(int descriptor) const {
    epoll_event wanted{};
    wanted.events = EPOLLIN;
    wanted.data.fd = descriptor;
    epoll_ctl(loop_, EPOLL_CTL_ADD, descriptor, &wanted);
  }

  void hearEvents() {
    while (const auto event = kit_.next(std::chrono::milliseconds(0))) {
      say(event->json);
      if (event->as<tembra::Found>() != nullptr && kit_.finish() != tembra::Result::ok) kit_.cancel();
      if (event->as<tembra::Ended>() != nullptr) runs_ = false;
    }
  }

  void readRequests() {
    char bytes[256];
    const ssize_t length = read(STDIN_FILENO, bytes, sizeof bytes);
    if (length <= 0) {
      isOpen_ = false;
      epoll_ctl(loop_, EPOLL_CTL_DEL, STDIN_FILENO, nullptr);
    }
    for (ssize_t i = 0; i < length; ++i) {
      bytes[i] == '\n' ? take(std::exchange(line_, {})) : line_.push_back(bytes[i]);
    }
  }

  void take(const std::string& request) {
    if (request == "cancel") {
      operations_.clear();
      kit_.cancel();
    } else if (request == "state") {
      say(kit_.stateJson());
    } else {
      operations_.push_back(request);
    }
  }

  void startNext() {
    const tembra::Result result = start(operations_.front());
    runs_ = result == tembra::Result::ok;
    if (result == tembra::Result::busy) return;
    if (!runs_) std::fprintf(stderr, "%s: %s\n", operations_.front().c_str(), tembra::sentence(result));
    operations_.pop_front();
  }

  tembra::Result start(const std::string& operation) {
    if (operation == "add") return kit_.add();
    if (operation == "remove") return kit_.remove();
    if (operation == "discover") return kit_.hueDiscover();
    if (operation == "account") return kit_.nestStatus();
    if (operation == "devices") return kit_.devices();
    if (operation.rfind("link ", 0) == 0) return kit_.hueAddBridge(operation.substr(5));
    return tembra::Result::invalid;
  }

  int loop_;
  tembra::Frontend kit_;
  bool isOpen_ = true;  // standard input
  bool runs_ = false;   // an operation
  std::deque<std::string> operations_;
  std::string line_;
};

}  // namespace

int main(int argc, char** argv) {
  tembra::Options options;
  options.program = "kiosk";
  if (argc > 1) options.watchPath = argv[1];
  Kiosk(options).run();
}
