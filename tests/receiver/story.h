// The trace of a test with the service's state in it.
#ifndef TEMBRA_TESTS_RECEIVER_STORY_H
#define TEMBRA_TESTS_RECEIVER_STORY_H

#include <mutex>
#include <string>

#include "kit/router.h"

/// While it lives, a line "  state 4 idle 0 ..." follows each log line and each event at which the service's state
/// differs from the last such line; and the time-out of every wait stands in the trace.
class Story {
 public:
  explicit Story(kit::Router& router);
  ~Story();
  Story(const Story&) = delete;
  Story& operator=(const Story&) = delete;

  /// What happened since it was last taken, ending with the state that it left, if that is another one.
  std::string take();

  void skip() { take(); }

 private:
  void noteState();

  kit::Router& router_;
  std::mutex mutex_;
  std::string state_;
};

#endif
