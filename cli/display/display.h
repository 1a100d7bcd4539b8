// What the program shows while it works. Which way depends on who reads: a person at a terminal, a file, a program, or
// the reader of a demonstration's timeline.
#ifndef TEMBRA_CLI_DISPLAY_H
#define TEMBRA_CLI_DISPLAY_H

#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <tembra/frontend.hpp>

#include "cli/failure.h"
#include "cli/options.h"

namespace tembra::cli {

/// Throws Failure (from any call that prints) when standard output cannot be written.
class Display {
 public:
  explicit Display(const Options& options) : options_(options) {}
  Display(const Display&) = delete;
  Display& operator=(const Display&) = delete;
  virtual ~Display() = default;

  // ---- For people ----

  /// A sentence of lasting interest, such as a result. What would steer a terminal is replaced.
  virtual void note(const std::string& /*sentence*/) {}

  /// A command that is given to the front-end kit.
  virtual void command(const std::string& /*call*/) {}

  /// What is being waited for, and how many seconds at most. Called several times a second.
  virtual void waiting(const std::string& /*what*/, std::optional<int> /*seconds*/) {}

  /// The question and what was typed so far. Called several times a second.
  virtual void prompt(const std::string& /*question*/, std::optional<int> /*seconds*/, const std::string& /*typed*/) {}
  virtual void endPrompt() {}

  // ---- For people and programs ----

  virtual void event(const Event& event) = 0;
  virtual void complain(const std::string& sentence);
  virtual void failed(const Failure& failure) { complain(failure.what()); }

  // ---- For programs ----

  /// A question, to be answered by a line of JSON.
  virtual void ask(const nlohmann::ordered_json& /*question*/) {}

  /// The last that is said.
  virtual void ended(int /*status*/) {}

 protected:
  void warn(const Warning& warning);

 private:
  const Options& options_;
};

[[nodiscard]] std::unique_ptr<Display> makeDisplay(const Options& options);

}  // namespace tembra::cli

#endif
