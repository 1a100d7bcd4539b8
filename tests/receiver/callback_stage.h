// What the tests of callbacks have in common.
#ifndef TEMBRA_TESTS_RECEIVER_CALLBACK_STAGE_H
#define TEMBRA_TESTS_RECEIVER_CALLBACK_STAGE_H

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>

#include "kit/router.h"

class Callback : public testing::Test {
 protected:
  kit::Router router;
  TembraAssociation& assoc = router.connect();

  /// Runs once, in the callback of the next event.
  void inCallback(std::function<void()> then) {
    router.onEvent([this, once = std::move(then)](AssocEvent*) {
      const auto kept = once;  // its first step ends the life of this hook
      router.onEvent(nullptr);
      kept();
    });
  }

  /// The first and the last line of a receive thread.
  static constexpr char kEntered[] = "log 0 libTembraAssoc:entered receive thread\n";
  static constexpr char kExited[] = "log 0 libTembraAssoc:exited receive thread\\n\n";

  static bool endsWithExit(const std::string& trace) {
    const std::string end = kExited;
    return trace.size() >= end.size() && trace.compare(trace.size() - end.size(), end.size(), end) == 0;
  }
};

#endif
