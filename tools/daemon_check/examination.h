// Asks a daemon everything that a subject has, and says what breaks the contract.
#ifndef TEMBRA_TOOLS_DAEMON_CHECK_EXAMINATION_H
#define TEMBRA_TOOLS_DAEMON_CHECK_EXAMINATION_H

#include <chrono>
#include <map>
#include <string>

#include "daemon_check/exercise.h"
#include "daemon_check/library_side.h"

namespace tembra::daemon_check {

struct Manner {
  std::string press;  ///< shell command that does what an exercise wants done; empty: a person does it
  double speed = 1;   ///< the limits are so many times shorter
  std::chrono::milliseconds quiet{2000};  ///< how long silence is listened to, before `speed`
};

class Examination {
 public:
  Examination(const Subject& subject, Manner manner) : subject_(subject), manner_(std::move(manner)) {}

  /// @return the number of faults found
  int run();

 private:
  using Milliseconds = std::chrono::milliseconds;

  void sendWrongLengths();
  bool perform(const Exercise& exercise);
  bool await(const Owed& owed);
  void send(const std::vector<Command>& commands) const;
  void haveDone(const std::string& task) const;
  void expectSilence(const char* since);

  Clock::time_point after(Milliseconds time) const;
  Clock::time_point afterSilence(Milliseconds time) const;
  [[nodiscard]] bool isOver() const { return Clock::now() >= end_; }
  /// The next datagram of the server itself, of the right length; none when the exercise is over.
  bool hear(Clock::time_point deadline, Datagram& datagram);
  void found(const std::string& fault);

  const Subject& subject_;
  Manner manner_;
  LibrarySide side_;
  std::string exercise_;
  Clock::time_point end_;  ///< of the exercise, whatever the daemon still says
  int faults_ = 0;
  std::map<std::string, int> findings_;  ///< how often each was found
};

}  // namespace tembra::daemon_check

#endif
