#include "attention.h"

#include <poll.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>

#include "event_inbox.h"

namespace tembra::cli {
namespace {

constexpr int kNoLimit = -1;
constexpr int kIgnored = -1;  // instead of a descriptor

int takeOverSignals() {
  sigset_t ending;
  sigemptyset(&ending);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) sigaddset(&ending, signal);
  pthread_sigmask(SIG_BLOCK, &ending, nullptr);
  std::signal(SIGPIPE, SIG_IGN);  // a reader that goes away must not end us before the radios are told
  return signalfd(-1, &ending, SFD_CLOEXEC);
}

}  // namespace

Attention::Attention() : signals_(takeOverSignals()) {}

Attention::~Attention() { close(signals_); }

Attention::Sources Attention::wait(int milliseconds, Sources asked) const {
  std::array<pollfd, 3> watched = {pollfd{signals_, POLLIN, 0},
                                   pollfd{asked.event ? eventDescriptor() : kIgnored, POLLIN, 0},
                                   pollfd{asked.input ? STDIN_FILENO : kIgnored, POLLIN, 0}};
  if (poll(watched.data(), watched.size(), milliseconds) < 0) return {false, false};
  if (watched[0].revents != 0) {
    signalfd_siginfo taken{};
    if (read(signals_, &taken, sizeof taken) > 0) throw Interrupted{};
  }
  return {watched[1].revents != 0, watched[2].revents != 0};
}

void Attention::waitForEvent(std::chrono::milliseconds longest) {
  static_cast<void>(wait(static_cast<int>(longest.count()), {.event = true, .input = false}));
}

void Attention::pause(std::chrono::milliseconds time) {
  static_cast<void>(wait(static_cast<int>(time.count()), {.event = false, .input = false}));
}

std::optional<std::string> Attention::takeLine() {
  const auto end = std::ranges::find(typed_, '\n');
  if (end == typed_.end() && !inputEnded_) return std::nullopt;
  std::string line(typed_.begin(), end);
  typed_.erase(typed_.begin(), end == typed_.end() ? end : end + 1);
  return line;
}

std::optional<std::string> Attention::readLine(const std::function<void()>& onEvent) {
  while (!inputEnded_) {
    if (auto line = takeLine()) return line;
    const Sources ready = wait(kNoLimit, {.event = true, .input = true});
    if (ready.event) onEvent();
    if (!ready.input) continue;
    std::array<char, 512> bytes{};
    const auto count = read(STDIN_FILENO, bytes.data(), bytes.size());
    if (count < 0 && errno == EINTR) continue;
    inputEnded_ = count <= 0;
    if (!inputEnded_) typed_.append(bytes.data(), static_cast<std::size_t>(count));
  }
  return typed_.empty() ? std::nullopt : takeLine();
}

}  // namespace tembra::cli
