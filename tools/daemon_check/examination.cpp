#include "daemon_check/examination.h"

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <stdexcept>

#include "platform/printable.h"

namespace tembra::daemon_check {

using std::chrono::milliseconds;

// A hurried check is not taken in by a machine that stalls.
constexpr milliseconds kShortestSilence{100};

// Twice what the answers of any exercise may take: an answer that keeps the library waiting starts its limit anew.
constexpr std::chrono::seconds kLongestExercise{900};

constexpr int kMostEqualFindings = 3;

// An exercise that went wrong leaves nothing for those behind it to build on.
int Examination::run() {
  exercise_ = "before a command";
  end_ = after(kLongestExercise);
  sendWrongLengths();
  expectSilence("without a command, or after one of the wrong length");
  if (faults_ == 0) std::cout << exercise_ << ": good" << std::endl;
  for (const Exercise& exercise : subject_.exercises) {
    exercise_ = exercise.name;
    const int before = faults_;
    if (!perform(exercise) || faults_ != before) {
      std::cout << exercise_ << ": not as it should be; what follows was not checked" << std::endl;
      break;
    }
    std::cout << exercise_ << ": good" << std::endl;
  }
  return faults_;
}

void Examination::sendWrongLengths() {
  for (const std::size_t length :
       {std::size_t{0}, std::size_t{1}, subject_.commandLength - 1, subject_.commandLength + 1}) {
    side_.send(subject_.server, Datagram(length));
  }
}

bool Examination::perform(const Exercise& exercise) {
  send(exercise.commands);
  if (!exercise.task.empty()) haveDone(exercise.task);
  end_ = after(kLongestExercise);
  bool good = true;
  for (const Owed& owed : exercise.owed) {
    good = await(owed);
    if (!good) break;
  }
  if (!exercise.ending.empty()) {
    send(exercise.ending);
    Datagram underWay;
    while (hear(afterSilence(manner_.quiet / 4), underWay)) {  // said before the command was read
    }
  }
  expectSilence("after the last answer");
  return good;
}

bool Examination::await(const Owed& owed) {
  Datagram datagram;
  for (;;) {
    if (!hear(after(owed.limit), datagram)) {
      if (!owed.optional && !isOver()) {
        found("too late: " + owed.name + " did not come within " + std::to_string(owed.limit.count()) + " s");
      }
      return owed.optional;
    }
    const Judgement judgement = owed.judge(datagram);
    for (const std::string& fault : judgement.faults) found(owed.name + ": " + fault);
    if (judgement.course != Course::kSameAnswer) return judgement.course == Course::kNextAnswer;
  }
}

void Examination::send(const std::vector<Command>& commands) const {
  for (const Command& command : commands) side_.send(subject_.server, command());
}

void Examination::haveDone(const std::string& task) const {
  if (manner_.press.empty()) {
    std::cout << exercise_ << ": " << task << std::endl;
  } else if (std::system(manner_.press.c_str()) != 0) {  // NOLINT(cert-env33-c): the user's own command
    throw std::runtime_error("the command of --press failed");
  }
}

void Examination::expectSilence(const char* since) {
  Datagram datagram;
  if (hear(afterSilence(manner_.quiet), datagram)) found(std::string("says something ") + since);
  while (hear(Clock::now(), datagram)) {
  }
  if (isOver()) {
    found("no end: the daemon still speaks after " + std::to_string(kLongestExercise.count()) + " s");
  }
}

Clock::time_point Examination::after(milliseconds time) const {
  const std::chrono::duration<double, std::milli> hurried(static_cast<double>(time.count()) / manner_.speed);
  return Clock::now() + std::chrono::duration_cast<Clock::duration>(hurried);
}

Clock::time_point Examination::afterSilence(milliseconds time) const {
  return std::max(after(time), Clock::now() + kShortestSilence);
}

// What the library would drop is told and dropped. What it would take is told and taken.
bool Examination::hear(Clock::time_point deadline, Datagram& datagram) {
  while (!isOver()) {
    const auto heard = side_.hear(std::min(deadline, end_));
    if (!heard) return false;
    const std::string from = heard->address + ":" + std::to_string(heard->port);
    if (heard->address != subject_.server.address) {
      found("a datagram of somebody else, " + from);
      continue;
    }
    if (heard->port != subject_.server.port) found("a datagram from another port, " + from);
    datagram = heard->bytes;
    if (datagram.size() != subject_.answerLength) {
      found("wrong length: " + std::to_string(datagram.size()) + " bytes, not " +
            std::to_string(subject_.answerLength));
    }
    datagram.resize(subject_.answerLength);
    return true;
  }
  return false;
}

// A daemon that does the same wrong thing without an end tells nothing new.
void Examination::found(const std::string& fault) {
  ++faults_;
  const int times = ++findings_[exercise_ + ": FAULT: " + fault];
  if (times > kMostEqualFindings) return;
  std::cout << exercise_ << ": FAULT: " << printable(fault)
            << (times < kMostEqualFindings ? "" : " (the last time that this is told)") << std::endl;
}

}  // namespace tembra::daemon_check
