#include "campaign/kit_front_end.h"

#include <poll.h>
#include <sys/signalfd.h>
#include <tembra/assoc.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <mutex>
#include <utility>

namespace campaign {
namespace {

using std::chrono::milliseconds;

// What the library tells, between the library and the kit.
struct {
  std::mutex mutex;
  std::vector<SeenEvent> events;
  void (*toKit)(AssocEvent*) = nullptr;
} overheard;

void overhear(AssocEvent* event) {
  {
    const std::lock_guard lock(overheard.mutex);
    overheard.events.push_back({worldClock()->now(), event->code});
  }
  overheard.toKit(event);
}

tembra::Role roleOf(const Plan& plan) {
  constexpr const char* roles[] = {"", "web", "lcd", "cloud", "mesh", "free1", "free2"};
  const auto tried = std::ranges::find(plan.steps, true, &Step::isTried);
  return static_cast<tembra::Role>(std::ranges::find(roles, tried->role) - std::begin(roles));
}

bool keepsOpen(const Plan& plan) { return plan.seed / scenarios().size() % 2 == plan.seed % 2; }

tembra::Reset resetOf(const std::string& word) {
  constexpr const char* words[] = {"", "zigbee", "zwave", "both", "all"};
  return static_cast<tembra::Reset>(std::ranges::find(words, word) - std::begin(words));
}

/// A hang-up, as a descriptor.
class HangUp {
 public:
  HangUp() {
    sigset_t hangUp;
    sigemptyset(&hangUp);
    sigaddset(&hangUp, SIGHUP);
    signals_ = signalfd(-1, &hangUp, SFD_CLOEXEC | SFD_NONBLOCK);
  }
  ~HangUp() { close(signals_); }
  HangUp(const HangUp&) = delete;
  HangUp& operator=(const HangUp&) = delete;

  /// Waits for it or for an event of the kit. @return whether it came
  [[nodiscard]] bool awaitBeside(int events) const {
    std::array<pollfd, 2> both = {pollfd{signals_, POLLIN, 0}, pollfd{events, POLLIN, 0}};
    poll(both.data(), both.size(), -1);
    signalfd_siginfo taken{};
    return read(signals_, &taken, sizeof taken) > 0;
  }

 private:
  int signals_;
};

End endOf(tembra::Outcome outcome) {
  if (outcome == TEMBRA_DONE) return End::kDone;
  return outcome == TEMBRA_CANCELLED ? End::kInterrupted : End::kFailed;
}

}  // namespace

KitFrontEnd::KitFrontEnd(const Plan& plan)
    : kit_(tembra::Options{.role = roleOf(plan), .keepOpen = keepsOpen(plan), .program = {}, .watchPath = {}}) {
  TembraAssociation& service = *TembraAssociation::getInstance();
  overheard.toKit = service.eventCallback;
  service.registerAssocEventCB(overhear);
}

KitFrontEnd::~KitFrontEnd() { TembraAssociation::getInstance()->registerAssocEventCB(overheard.toKit); }

std::string KitFrontEnd::ending() const {
  const tembra::Event& last = story_.events.back().event;
  return std::string(tembra_operation_name(last.operation)) + ": " +
         tembra_reason_name(last.as<tembra::Ended>()->reason);
}

tembra::Result KitFrontEnd::start(const Step& step) {
  switch (step.goal) {
    case Goal::kAdd:
    case Goal::kCancel:
      return kit_.add();
    case Goal::kRemove:
      return kit_.remove();
    case Goal::kReset:
      return kit_.reset(resetOf(step.word));
    case Goal::kHueDiscover:
      return kit_.hueDiscover();
    case Goal::kHueAdd:
      return kit_.hueAddBridge(kBridgeMac);
    case Goal::kHueBulb:
      return kit_.hueAddBulb(kBridgeMac, step.word);
    case Goal::kHueRefresh:
      return kit_.hueRefresh(kBridgeMac);
    case Goal::kHueRemove:
      return kit_.hueRemove(kBridgeMac);
    case Goal::kNestLink:
      return kit_.nestLink("code");
    case Goal::kNestUnlink:
      return kit_.nestUnlink();
  }
  return tembra::Result::invalid;
}

void KitFrontEnd::expectSilence() {
  if (const auto event = kit_.next(milliseconds(0))) story_.mistakes.push_back("behind the end: " + event->json);
}

void KitFrontEnd::cancel() {
  story_.did.push_back(worldClock()->now());
  kit_.cancel();
}

void KitFrontEnd::hear(const Step& step, const tembra::Event& event) {
  story_.events.push_back({worldClock()->now(), event, kit_.stateJson()});
  if (event.as<tembra::Waiting>() != nullptr && step.goal == Goal::kCancel) cancel();
  if (const auto* found = event.as<tembra::Found>()) {
    story_.did.push_back(worldClock()->now());
    if (kit_.finish(found->type, step.name) != tembra::Result::ok) story_.mistakes.emplace_back("finish is refused");
  }
}

// A call of the library goes on behind the end of an operation that was cancelled.
void KitFrontEnd::awaitLastCall() const {
  while (kit_.state().value().phase == TEMBRA_PHASE_CLOSING) worldClock()->sleepUntil(worldClock()->now() + kSecond);
}

End KitFrontEnd::operate(const Step& step) {
  const HangUp hangUp;
  story_ = {};
  expectSilence();
  story_.did.push_back(worldClock()->now());
  const auto started = start(step);
  if (started != tembra::Result::ok) story_.mistakes.emplace_back("the kit refuses to start");
  End end = End::kFailed;
  for (bool over = started != tembra::Result::ok; !over;) {
    if (hangUp.awaitBeside(kit_.descriptor())) cancel();
    while (const auto event = kit_.next(milliseconds(0))) {
      if (const auto* ended = event->as<tembra::Ended>()) end = endOf(ended->outcome), over = true;
      hear(step, *event);
    }
  }
  awaitLastCall();
  const std::lock_guard lock(overheard.mutex);
  story_.told = std::exchange(overheard.events, {});
  return end;
}

}  // namespace campaign
