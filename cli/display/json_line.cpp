#include "cli/display/json_line.h"

#include <tembra/frontend.h>

#include <iostream>
#include <nlohmann/json.hpp>

#include "cli/failure.h"

namespace tembra::cli {

// In ASCII: the other characters, some of which steer terminals, stand there as escapes.
std::string jsonLine(const nlohmann::ordered_json& object) {
  return object.dump(-1, ' ', true, nlohmann::ordered_json::error_handler_t::replace);
}

std::string jsonEvent(const std::string& name, const nlohmann::ordered_json& members) {
  nlohmann::ordered_json object = {{"schema", TEMBRA_EVENT_SCHEMA}, {"event", name}};
  object.update(members);
  return jsonLine(object);
}

void printLine(const std::string& line) {
  std::cout << line << std::endl;
  if (!std::cout) throw Failure(kFailed, "cannot write the output.");
}

}  // namespace tembra::cli
