#include "cli/dialogue/attention.h"

#include <poll.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>

namespace tembra::cli {
namespace {

constexpr std::chrono::hours kLong{1};

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

void Attention::wait(int descriptor, Input input, std::chrono::milliseconds longest) {
  const int standardInput = input == Input::kAwaited && !inputEnded_ ? STDIN_FILENO : kNoDescriptor;
  std::array<pollfd, 3> watched = {pollfd{signals_, POLLIN, 0}, pollfd{descriptor, POLLIN, 0},
                                   pollfd{standardInput, POLLIN, 0}};
  if (poll(watched.data(), watched.size(), static_cast<int>(longest.count())) < 0) return;
  if (watched[0].revents != 0) {
    signalfd_siginfo taken{};
    if (read(signals_, &taken, sizeof taken) > 0) throw Interrupted{};
  }
  if (watched[2].revents != 0) readInput();
}

void Attention::readInput() {
  std::array<char, 512> bytes{};
  const auto count = read(STDIN_FILENO, bytes.data(), bytes.size());
  if (count < 0 && (errno == EINTR || errno == EAGAIN)) return;
  inputEnded_ = count <= 0;
  if (!inputEnded_) typed_.append(bytes.data(), static_cast<std::size_t>(count));
}

std::optional<std::string> Attention::takeLine() {
  const auto end = std::ranges::find(typed_, '\n');
  const bool isWhole = end != typed_.end() || (inputEnded_ && !typed_.empty());
  if (!isWhole) return std::nullopt;
  std::string line(typed_.begin(), end);
  typed_.erase(typed_.begin(), end == typed_.end() ? end : end + 1);
  return line;
}

std::optional<char> Attention::takeByte() {
  if (typed_.empty()) return std::nullopt;
  const char byte = typed_.front();
  typed_.erase(typed_.begin());
  return byte;
}

std::optional<std::string> Attention::readLine() {
  while (true) {
    if (auto line = takeLine()) return line;
    if (inputIsOver()) return std::nullopt;
    wait(kNoDescriptor, Input::kAwaited, kLong);
  }
}

}  // namespace tembra::cli
