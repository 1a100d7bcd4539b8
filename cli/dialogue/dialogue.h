// An operation of the front-end kit while it runs.
#ifndef TEMBRA_CLI_DIALOGUE_H
#define TEMBRA_CLI_DIALOGUE_H

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <tembra/frontend.hpp>
#include <vector>

#include "cli/context.h"

namespace tembra::cli {

class Dialogue {
 public:
  /// What Ctrl-C does while the operation runs.
  enum class AtInterrupt {
    kCancel,
    kFinish  ///< it must not stop half-way: only a second Ctrl-C leaves it
  };
  using Start = std::function<Result(Frontend& kit)>;
  using OnEvent = std::function<void(const Event& event)>;

  /// Throws Failure (kNoConnection) when the kit cannot be made.
  explicit Dialogue(const Context& context);
  ~Dialogue();
  Dialogue(const Dialogue&) = delete;
  Dialogue& operator=(const Dialogue&) = delete;

  [[nodiscard]] const Context& context() const { return context_; }
  [[nodiscard]] Frontend& kit() const { return *kit_; }

  /// Shows the events of the operation until it ends. Throws Interrupted, and Failure unless it is done; cancels it
  /// when `onEvent` throws a Failure.
  void run(const std::string& call, const Start& start, const OnEvent& onEvent = {},
           AtInterrupt atInterrupt = AtInterrupt::kCancel);

  /// How the last operation ended; nothing when it was left while it ran.
  [[nodiscard]] const std::optional<Ended>& ended() const { return ended_; }

  /// Waits a moment for something to happen, within `onEvent` for the user. Leaves `run` when the operation ends.
  void waitForUser();

  [[nodiscard]] std::optional<int> secondsLeft() const;

  /// A line of JSON from standard input, other than one that cancels. Nothing at its end.
  [[nodiscard]] std::optional<std::string> answer();

  /// Whether a call of the library goes on, so that the process has to end without tidying up.
  [[nodiscard]] static bool leavesCallBehind();

 private:
  struct Over {};

  void wait(Attention::Input input);
  void step();
  void hearEvents();
  void hearLines();
  void cancelAndListen();
  void finish(AtInterrupt atInterrupt);
  void throwUnlessDone() const;

  const Context& context_;
  std::unique_ptr<Frontend> kit_;
  OnEvent onEvent_;
  std::optional<Ended> ended_;
  std::optional<Phase> over_;  ///< what was awaited has come, and nothing else is awaited yet
  std::vector<std::string> answers_;
};

}  // namespace tembra::cli

#endif
