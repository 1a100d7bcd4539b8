#include "sim/replay/playback.h"

#include <algorithm>
#include <utility>

#include "sim/replay/commands_sent.h"

namespace tembra::sim {

using std::chrono::milliseconds;

bool isReaction(const RecordedDatagram& request, std::optional<Server> answering) {
  const Command command = commandIn(*request.server, request.bytes);
  return command == Command::kNoticeRemoved || (command == Command::kCancel && request.server != answering);
}

// An answer does not wait for what the library sends because of the answer before: a library that leaves that out is
// answered all the same.
Playback::Playback(EventLoop& loop, const Traffic& traffic, Say say)
    : loop_(loop), traffic_(traffic), say_(std::move(say)), over_(traffic.datagrams.size()) {
  for (std::size_t place = 0; place < traffic.datagrams.size(); ++place) {
    if (at(place).isRequest) continue;
    std::optional<std::size_t> request;
    for (std::size_t earlier = place; earlier > 0 && !request; --earlier) {
      const RecordedDatagram& candidate = at(earlier - 1);
      if (!candidate.isRequest) continue;
      if (at(place).runs || !isReaction(candidate, at(place).server)) request = earlier - 1;
    }
    answers_.push_back({place, request});
  }
}

void Playback::start() {
  start_ = loop_.now();
  schedule();
}

void Playback::requestIsOver(std::size_t place) {
  over_[place] = loop_.now();
  schedule();
}

// One after the other: what came first then comes first now.
void Playback::schedule() {
  if (isScheduled_ || isOver()) return;
  const Answer& answer = answers_[next_];
  if (answer.request && !over_[*answer.request]) return;
  const Time since = answer.request ? *over_[*answer.request] : start_;
  const auto delay = at(answer.place).time - at(answer.request.value_or(0)).time;
  const Time wait = since + std::chrono::round<milliseconds>(delay) - loop_.now();
  isScheduled_ = true;
  timer_ = loop_.after(std::max(wait, Time(0)), [this] { sayNext(); });
}

void Playback::sayNext() {
  isScheduled_ = false;
  say_(at(answers_[next_++].place));
  schedule();
}

}  // namespace tembra::sim
