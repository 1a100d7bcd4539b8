// Plays the answers of one operation of a server, one after the other, as the faults let them through.
#ifndef TEMBRA_SIM_ANSWERS_ANSWERS_H
#define TEMBRA_SIM_ANSWERS_ANSWERS_H

#include <chrono>
#include <cstddef>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "sim/answers/fault.h"
#include "sim/answers/messages.h"
#include "sim/core/daemon.h"
#include "sim/core/surroundings.h"

namespace tembra::sim {

struct Answer {
  MessageKind kind;
  std::string text;  ///< for the timeline
  std::vector<unsigned char> datagram;
};

/// Where a server's datagrams tell what became of it; the fault "code" writes there.
struct CodeByte {
  std::size_t offset;
  /// Whether a code that a fault wrote into a message ends the operation.
  bool (*ends)(const MessageKind& message, unsigned char code);
};

class Answers {
 public:
  using Send = std::function<void(Bytes datagram, std::string_view text, Sender sender)>;

  /// How the servers behave in general; shared by them.
  struct Manner {
    FaultList& faults;
    std::chrono::milliseconds latency;
  };

  Answers(Surroundings surroundings, Manner manner, CodeByte codeByte, Send send);
  Answers(const Answers&) = delete;
  Answers& operator=(const Answers&) = delete;
  ~Answers() { drop(); }

  /// Begins a new operation; `done` runs after its last answer. A running one is dropped.
  void play(std::vector<Answer> answers, EventLoop::Task done);
  /// Forgets the answers that are still to come; `done` does not run.
  void drop();
  bool playing() const { return playing_; }

 private:
  /// An answer that is still to come, and what becomes of it as soon as that is known.
  struct Pending {
    Answer answer;
    std::optional<Distortion> distortion;
  };

  const Distortion& fateOfNext();
  void scheduleNext();
  void deliver(const Distortion& distortion);
  void distort(Answer& answer, unsigned char code) const;
  void send(const Answer& answer, const Distortion& distortion);
  void finish();

  Surroundings surroundings_;
  Manner manner_;
  CodeByte codeByte_;
  Send send_;
  std::deque<Pending> pending_;
  EventLoop::Task done_;
  EventLoop::TimerId timer_ = 0;
  bool playing_ = false;
};

}  // namespace tembra::sim

#endif
