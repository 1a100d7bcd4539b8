#include "story.h"

#include "harness/state_text.h"
#include "harness/trace.h"

Story::Story(harness::Router& router) : router_(router), state_(router.state()) {
  router.watch(harness::kWatchTimeouts);
  router.onLog([this](const std::string&) { noteState(); });
  router.onEvent([this](AssocEvent*) { noteState(); });
}

Story::~Story() {
  router_.onLog(nullptr);
  router_.onEvent(nullptr);
}

std::string Story::take() {
  noteState();
  return router_.takeTrace();
}

void Story::noteState() {
  const std::lock_guard<std::mutex> lock(mutex_);
  const std::string now = harness::stateText();
  if (now == state_) return;
  state_ = now;
  harness::trace().add("  " + now);
}
