#include "story.h"

#include "kit/state_text.h"
#include "kit/trace.h"

Story::Story(kit::Router& router) : router_(router), state_(router.state()) {
  router.watch(kit::kWatchTimeouts);
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
  const std::string now = kit::stateText();
  if (now == state_) return;
  state_ = now;
  kit::trace().add("  " + now);
}
