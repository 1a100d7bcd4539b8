#include "cli/commands/other_front_end.h"

#include <cerrno>
#include <nlohmann/json.hpp>

#include "cli/display/json_line.h"

namespace tembra::cli {

bool isNobodyThere(int error) { return error == ENOENT || error == ECONNREFUSED; }

std::string statusEvent(const tembra_holder* holder) {
  nlohmann::ordered_json status = {{"holder", nullptr}};
  if (holder != nullptr) {
    status["holder"] = {{"role", holder->role},   {"program", holder->program},     {"pid", holder->pid},
                        {"since", holder->since}, {"operation", holder->operation}, {"phase", holder->phase}};
  }
  return jsonEvent("status", status);
}

}  // namespace tembra::cli
