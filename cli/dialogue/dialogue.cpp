#include "cli/dialogue/dialogue.h"

#include <cerrno>
#include <cstring>
#include <nlohmann/json.hpp>

#include "cli/display/event_text.h"
#include "cli/failure.h"
#include "cli/words/roles.h"

namespace tembra::cli {
namespace {

using namespace std::chrono_literals;

constexpr auto kTick = 200ms;
constexpr auto kLongestCancelling = 3s;

// Freed by nobody: a call of the library that never ends would keep its thread, and the kit waits for that.
Frontend* leftBehind = nullptr;

// What the exit status 3 stands for: nobody was there to do it.
bool isAboutConnection(Reason reason) {
  return reason >= TEMBRA_REASON_IN_USE && reason <= TEMBRA_REASON_CONNECTION_LOST;
}

ExitStatus statusOf(Result refusal) {
  const bool isAboutTexts = refusal == Result::invalid || refusal == Result::tooLong || refusal == Result::badText;
  return isAboutTexts ? kUsage : kFailed;
}

// A list that becomes empty loses one device after the other.
bool bringsWhatIsAwaited(const Event& event) {
  return event.as<Added>() != nullptr || (event.as<Removed>() != nullptr && event.phase == TEMBRA_PHASE_LEAVING);
}

std::string storedElsewhere(const Ended& ended, const Options& options) {
  if (ended.reason != TEMBRA_REASON_NOT_STORED || options.database.empty()) return "";
  return "Perhaps the HA server keeps another file than " + options.database + ".";
}

// What of this program helps then; the kit's advice is for all front ends.
std::string helpAfter(Reason reason) {
  switch (reason) {
    case TEMBRA_REASON_ALREADY_KNOWN:
      return " \"tembra-assoc add --again\" does both and keeps the name.";
    case TEMBRA_REASON_UNKNOWN_KIND:
    case TEMBRA_REASON_CHOICE_TOO_SLOW:
    case TEMBRA_REASON_NOT_STORED:
    case TEMBRA_REASON_CANCELLED_JOINED:
      return " \"tembra-assoc remove --unlisted\" takes it out by the device's own button.";
    default:
      return "";
  }
}

}  // namespace

Dialogue::Dialogue(const Context& context) : context_(context) {
  tembra::Options options;
  options.role = roleNumber(context.options.role);
  options.program = "tembra-assoc";
  options.watchPath = context.options.watchPath;
  kit_ = std::make_unique<Frontend>(options);
  if (!*kit_) throw Failure(kNoConnection, std::string("the front-end kit cannot be made: ") + std::strerror(errno));
}

Dialogue::~Dialogue() {
  const auto state = kit_->state();
  const bool goesOn = state && state->phase != TEMBRA_PHASE_NONE;
  if (goesOn) leftBehind = kit_.release();
}

bool Dialogue::leavesCallBehind() { return leftBehind != nullptr; }

std::optional<int> Dialogue::secondsLeft() const {
  const auto state = kit_->state();
  if (!state || !state->endsIn) return std::nullopt;
  return static_cast<int>(std::chrono::ceil<std::chrono::seconds>(*state->endsIn).count());
}

void Dialogue::run(const std::string& call, const Start& start, const OnEvent& onEvent, AtInterrupt atInterrupt) {
  context_.display.command(call);
  onEvent_ = onEvent;
  ended_.reset();
  if (const Result result = start(*kit_); result != Result::ok) throw Failure(statusOf(result), sentence(result));
  try {
    finish(atInterrupt);
  } catch (const Over&) {
    // The operation ended while the user was asked.
  } catch (const Interrupted&) {
    cancelAndListen();
    const bool tooLate = ended_ && ended_->outcome == TEMBRA_DONE && atInterrupt != AtInterrupt::kFinish;
    if (!tooLate) throw;
  } catch (const Failure&) {
    cancelAndListen();
    throw;
  }
  throwUnlessDone();
}

void Dialogue::finish(AtInterrupt atInterrupt) {
  // A cancel from elsewhere ends the operation and not the reset.
  const auto goesOn = [&] { return atInterrupt == AtInterrupt::kFinish && kit_->state()->phase != TEMBRA_PHASE_NONE; };
  bool wasInterrupted = false;
  while (!ended_ || goesOn()) {
    try {
      step();
    } catch (const Interrupted&) {
      if (atInterrupt != AtInterrupt::kFinish || wasInterrupted) throw;
      wasInterrupted = true;
      context_.display.note("The reset cannot be taken back; it ends in a moment. Ctrl-C again leaves at once.");
    }
  }
  if (wasInterrupted) throw Interrupted{};
}

void Dialogue::step() {
  if (const auto state = kit_->state(); state && state->phase != over_) {
    context_.display.waiting(awaitedText(state->operation, state->phase), secondsLeft());
  }
  wait(context_.options.mayAskProgram() ? Attention::Input::kAwaited : Attention::Input::kIgnored);
}

void Dialogue::wait(Attention::Input input) {
  context_.attention.wait(kit_->descriptor(), input, kTick);
  if (context_.options.mayAskProgram()) hearLines();
  hearEvents();
}

void Dialogue::waitForUser() {
  wait(Attention::Input::kAwaited);
  if (ended_) throw Over{};
}

void Dialogue::hearEvents() {
  while (const auto event = kit_->next(0ms)) {
    if (const auto* ended = event->as<Ended>()) ended_ = *ended;
    context_.display.event(*event);
    over_ = bringsWhatIsAwaited(*event) ? std::optional(event->phase) : std::nullopt;
    if (onEvent_ && !ended_) onEvent_(*event);
  }
}

// A program may cancel whenever it likes; its other lines are answers, to be taken in their order.
void Dialogue::hearLines() {
  while (const auto line = context_.attention.takeLine()) {
    const auto said = nlohmann::json::parse(*line, nullptr, false);
    if (said.is_object() && said.contains("cancel") && said["cancel"] == true) {
      kit_->cancel();
    } else {
      answers_.push_back(*line);
    }
  }
}

std::optional<std::string> Dialogue::answer() {
  while (answers_.empty()) {
    if (context_.attention.inputIsOver()) return std::nullopt;
    waitForUser();
  }
  const std::string line = answers_.front();
  answers_.erase(answers_.begin());
  return line;
}

// Nothing is shown of it where it cannot be shown.
void Dialogue::cancelAndListen() {
  onEvent_ = {};
  kit_->cancel();
  const auto until = std::chrono::steady_clock::now() + kLongestCancelling;
  while (!ended_ && std::chrono::steady_clock::now() < until) {
    const auto event = kit_->next(kTick);
    if (!event) continue;
    if (const auto* ended = event->as<Ended>()) ended_ = *ended;
    try {
      context_.display.event(*event);
    } catch (const Failure&) {
      continue;
    }
  }
  // A program has the event.
  if (context_.options.json || !ended_ || ended_->reason == TEMBRA_REASON_CANCELLED) return;
  try {
    context_.display.complain(endText(*ended_) + helpAfter(ended_->reason));
  } catch (const Failure&) {
    return;
  }
}

void Dialogue::throwUnlessDone() const {
  if (ended_->outcome == TEMBRA_DONE) return;
  const ExitStatus status = isAboutConnection(ended_->reason) ? kNoConnection : kFailed;
  const std::string elsewhere = storedElsewhere(*ended_, context_.options);
  const bool isUntold = context_.options.json && !elsewhere.empty();  // of the rest a program has the event
  if (isUntold) context_.display.complain(elsewhere);
  throw Failure(status, endText(*ended_) + helpAfter(ended_->reason) + (elsewhere.empty() ? "" : " " + elsewhere),
                Failure::Told::kByEvent);
}

}  // namespace tembra::cli
