// What people can ask of a running simulator, from the control socket or from a scenario: one word and an argument.
#ifndef TEMBRA_SIM_CONTROL_COMMANDS_H
#define TEMBRA_SIM_CONTROL_COMMANDS_H

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>

#include "sim/core/outcome.h"

namespace tembra::sim {

class Commands {
 public:
  using Action = std::function<Outcome(const std::string& argument)>;

  void add(std::string word, Action action) { actions_[std::move(word)] = std::move(action); }
  bool knows(const std::string& word) const { return actions_.contains(word); }

  /// Runs "WORD ARGUMENT" or "WORD". An action refuses an argument by throwing std::invalid_argument.
  Outcome run(std::string_view request) const;

 private:
  std::map<std::string, Action> actions_;
};

}  // namespace tembra::sim

#endif
