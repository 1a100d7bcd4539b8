#include "sim/control/commands.h"

#include <algorithm>
#include <stdexcept>

namespace tembra::sim {

Outcome Commands::run(std::string_view request) const {
  const std::size_t end = std::min(request.find(' '), request.size());
  const std::string word(request.substr(0, end));
  const auto action = actions_.find(word);
  if (action == actions_.end()) return {false, "the simulator knows no request \"" + word + "\""};
  try {
    return action->second(std::string(request.substr(std::min(end + 1, request.size()))));
  } catch (const std::invalid_argument& mistake) {
    return {false, mistake.what()};
  }
}

}  // namespace tembra::sim
