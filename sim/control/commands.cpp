#include "sim/control/commands.h"

#include <algorithm>

namespace tembra::sim {

Outcome Commands::run(std::string_view request) const {
  const std::size_t end = std::min(request.find(' '), request.size());
  const std::string word(request.substr(0, end));
  const auto action = actions_.find(word);
  if (action == actions_.end()) return {false, "the simulator knows no request \"" + word + "\""};
  return action->second(std::string(request.substr(std::min(end + 1, request.size()))));
}

}  // namespace tembra::sim
