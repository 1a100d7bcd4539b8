// Says what the servers said, each datagram as long after the request that it followed as it was then.
#ifndef TEMBRA_SIM_REPLAY_PLAYBACK_H
#define TEMBRA_SIM_REPLAY_PLAYBACK_H

#include <chrono>
#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

#include "sim/core/event_loop.h"
#include "sim/replay/traffic.h"

namespace tembra::sim {

class Playback {
 public:
  using Say = std::function<void(const RecordedDatagram& answer)>;

  Playback(EventLoop& loop, const Traffic& traffic, Say say);
  Playback(const Playback&) = delete;
  Playback& operator=(const Playback&) = delete;
  ~Playback() { loop_.cancel(timer_); }

  void start();
  /// The request at this place of the recording came now, or will not come any more.
  void requestIsOver(std::size_t place);

  [[nodiscard]] bool isOver() const { return next_ == answers_.size(); }
  [[nodiscard]] std::size_t left() const { return answers_.size() - next_; }

 private:
  using Time = std::chrono::milliseconds;

  /// An answer, and the request that it followed.
  struct Answer {
    std::size_t place;
    std::optional<std::size_t> request;
  };

  [[nodiscard]] const RecordedDatagram& at(std::size_t place) const { return traffic_.datagrams[place]; }
  void schedule();
  void sayNext();

  EventLoop& loop_;
  const Traffic& traffic_;
  Say say_;
  std::vector<Answer> answers_;
  std::vector<std::optional<Time>> over_;  ///< when each request of the recording was over
  std::size_t next_ = 0;
  bool isScheduled_ = false;
  Time start_{0};
  EventLoop::TimerId timer_ = 0;
};

/// Whether the library sends a request by itself as soon as a server has answered: a cancel to the other radio, or the
/// notice of a device that left.
bool isReaction(const RecordedDatagram& request, std::optional<Server> answering);

}  // namespace tembra::sim

#endif
