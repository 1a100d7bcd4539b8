#include "sim/answers/answers.h"

#include <algorithm>
#include <utility>

namespace tembra::sim {

Answers::Answers(Surroundings surroundings, Manner manner, CodeByte codeByte, Send send)
    : surroundings_(surroundings), manner_(manner), codeByte_(codeByte), send_(std::move(send)) {}

void Answers::play(std::vector<Answer> answers, EventLoop::Task done) {
  drop();
  for (Answer& answer : answers) pending_.push_back({std::move(answer), std::nullopt});
  done_ = std::move(done);
  playing_ = true;
  scheduleNext();
}

void Answers::drop() {
  surroundings_.loop.cancel(timer_);
  pending_.clear();
  playing_ = false;
}

// Faults are used up when an answer's turn comes, once, wherever it then stands.
const Distortion& Answers::fateOfNext() {
  Pending& next = pending_.front();
  if (!next.distortion) next.distortion = manner_.faults.take(next.answer.kind.name);
  return *next.distortion;
}

void Answers::scheduleNext() {
  if (pending_.empty()) return finish();
  while (fateOfNext().reordered && pending_.size() > 1) {
    pending_[0].distortion->reordered = false;
    std::swap(pending_[0], pending_[1]);
  }
  const Distortion distortion = fateOfNext();
  const auto delay = manner_.latency * pending_.front().answer.kind.latencies + distortion.late;
  timer_ = surroundings_.loop.after(delay, [this, distortion] { deliver(distortion); });
}

void Answers::deliver(const Distortion& distortion) {
  Answer answer = std::move(pending_.front().answer);
  pending_.pop_front();
  bool ends = distortion.silent;
  if (distortion.code) {
    const int code = *distortion.code == Fault::kFailure ? answer.kind.failure : *distortion.code;
    distort(answer, static_cast<unsigned char>(code));
    ends = ends || codeByte_.ends(answer.kind, static_cast<unsigned char>(code));
  }
  if (distortion.foreign) send_(answer.datagram, answer.text, Sender::kStranger);
  if (distortion.lost || distortion.silent) {
    surroundings_.journal.said("fault", "nobody",
                               answer.text + (distortion.silent ? ", silent from now on" : ", lost"));
  } else {
    send(answer, distortion);
  }
  if (ends) return finish();
  scheduleNext();
}

void Answers::distort(Answer& answer, unsigned char code) const {
  if (codeByte_.offset >= answer.datagram.size()) return;
  answer.datagram[codeByte_.offset] = code;
  answer.text += ", with code " + std::to_string(code);
}

void Answers::send(const Answer& answer, const Distortion& distortion) {
  const std::size_t length = std::min(distortion.length.value_or(answer.datagram.size()), answer.datagram.size());
  const Bytes datagram = Bytes(answer.datagram).first(length);
  send_(datagram, answer.text, Sender::kSelf);
  if (distortion.twice) send_(datagram, answer.text + ", again", Sender::kSelf);
}

void Answers::finish() {
  drop();
  const EventLoop::Task done = std::exchange(done_, nullptr);
  if (done) done();
}

}  // namespace tembra::sim
