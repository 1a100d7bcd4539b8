// One thing that the library asks of a daemon: a command, and the answers that the daemon owes for it.
#ifndef TEMBRA_TOOLS_DAEMON_CHECK_EXERCISE_H
#define TEMBRA_TOOLS_DAEMON_CHECK_EXERCISE_H

#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include "daemon_check/library_side.h"
#include "sim/core/endpoints.h"

namespace tembra::daemon_check {

/// A command's bytes. They are made when they are sent: what to name is known only then.
using Command = std::function<Datagram()>;

enum class Course {
  kNextAnswer,  ///< the answer is the one that was due
  kSameAnswer,  ///< it is one that keeps the library waiting
  kOver         ///< nothing more can come of the exercise
};

struct Judgement {
  Course course;
  std::vector<std::string> faults;  ///< one sentence each
};

/// An answer that is owed.
struct Owed {
  std::string name;
  std::chrono::seconds limit;                       ///< since the command, or since the answer before
  std::function<Judgement(const Datagram&)> judge;  ///< of a datagram of the right length
  bool optional = false;
};

struct Exercise {
  std::string name;
  std::string task;  ///< what somebody has to do; empty: nothing
  std::vector<Command> commands;
  std::vector<Owed> owed;
  std::vector<Command> ending;  ///< commands that end it; then nothing may come any more
};

/// How a daemon is asked, in its server's words.
struct Subject {
  const sim::Endpoint& server;
  std::size_t commandLength;
  std::size_t answerLength;
  std::vector<Exercise> exercises;
};

/// `reset`: also what makes a radio forget its devices.
[[nodiscard]] Subject zwaveSubject(bool reset);
[[nodiscard]] Subject zigbeeSubject(bool reset);
[[nodiscard]] Subject hueSubject();
[[nodiscard]] Subject nestSubject();

}  // namespace tembra::daemon_check

#endif
