#include "cli/record/holders.h"

#include <sys/epoll.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <thread>

namespace tembra::cli {
namespace {

using Json = nlohmann::json;

constexpr int kTries = 20;  // the socket's file is there a moment before somebody listens
constexpr std::chrono::microseconds kBetweenConnects{250};

void watchFor(const Descriptor& ready, int descriptor) {
  epoll_event event{};
  event.events = EPOLLIN;
  epoll_ctl(ready.get(), EPOLL_CTL_ADD, descriptor, &event);
}

long long integerAt(const Json& object, const char* place) {
  const Json::json_pointer pointer(place);
  return object.contains(pointer) && object.at(pointer).is_number_integer() ? object.at(pointer).get<long long>() : 0;
}

template <typename Clock>
long long microsecondsOf() {
  return std::chrono::duration_cast<std::chrono::microseconds>(Clock::now().time_since_epoch()).count();
}

}  // namespace

long long steadyClock() { return microsecondsOf<std::chrono::steady_clock>(); }

Holders::Holders(std::string watchPath)
    : path_(std::move(watchPath)),
      since_(steadyClock()),
      changes_(inotify_init1(IN_CLOEXEC | IN_NONBLOCK)),
      ready_(epoll_create1(EPOLL_CLOEXEC)) {
  watchFor(ready_, changes_.get());
  awaitSocket();
}

// An operation may be over in some milliseconds. The folder may be made later, and a folder that is awaited already may
// be awaited again.
void Holders::awaitSocket() const {
  const std::filesystem::path folder = std::filesystem::path(path_).parent_path();
  for (const auto& each : {folder.parent_path(), folder}) {
    inotify_add_watch(changes_.get(), each.c_str(), IN_CREATE | IN_ATTRIB | IN_ONLYDIR);
  }
}

bool Holders::socketMayHaveCome() const {
  std::array<char, 4096> events;
  bool came = false;
  while (::read(changes_.get(), events.data(), events.size()) > 0) came = true;
  if (came) awaitSocket();
  return came;
}

int Holders::connect(bool mayHaveCome) {
  int error = 0;
  for (int tries = mayHaveCome ? kTries : 1; tries > 0 && !watch_; --tries) {
    watch_.reset(tembra_watch_open(path_.c_str()));
    error = watch_ ? tembra_watch_history(watch_.get()) : errno;
    if (error != 0) watch_.reset();
    if (!watch_ && tries > 1) std::this_thread::sleep_for(kBetweenConnects);
  }
  if (watch_) watchFor(ready_, tembra_watch_descriptor(watch_.get()));
  return isNobodyThere(error) || error == EAGAIN || error == ECONNRESET ? 0 : error;
}

int Holders::read(const OnLine& onLine) {
  const bool mayHaveCome = socketMayHaveCome();
  const int refusal = watch_ ? 0 : connect(mayHaveCome);
  if (!watch_) return refusal;
  while (const char* const line = tembra_watch_next(watch_.get(), 0)) hear(line, onLine);
  const int error = errno;
  if (error == ETIMEDOUT) return 0;
  watch_.reset();  // and with it its place among what is ready
  return error == ECONNRESET ? 0 : error;
}

// A front end that opens the connection again tells all it has again.
void Holders::hear(const std::string& line, const OnLine& onLine) {
  const Json said = Json::parse(line, nullptr, false);
  if (!said.is_object()) return;
  if (const long long process = integerAt(said, "/holder/pid"); process != 0) {
    if (process != process_) lastEntry_ = 0;
    process_ = process;
    return onLine(microsecondsOf<std::chrono::system_clock>(), line);
  }
  const long long entry = integerAt(said, "/entry");
  if (entry <= lastEntry_ || integerAt(said, "/monotonic_us") < since_) return;
  lastEntry_ = entry;
  onLine(integerAt(said, "/wall_us"), line);
}

}  // namespace tembra::cli
