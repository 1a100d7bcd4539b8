#include "cli/commands/history_text.h"

#include <tembra/vocabulary.h>

#include <cstdio>
#include <cstring>
#include <ctime>
#include <nlohmann/json.hpp>

#include "cli/commands/watched_line.h"
#include "cli/words/device_types.h"
#include "cli/words/numbers.h"

namespace tembra::cli {
namespace {

using Json = nlohmann::json;

long long integerOf(const Json& object, const char* member) {
  const auto found = object.is_object() ? object.find(member) : object.end();
  return found != object.end() && found->is_number_integer() ? found->get<long long>() : 0;
}

// The kit has numbers for types and for what a reset resets. They come first.
std::string firstArgument(const std::string& call, const std::string& argument) {
  constexpr const char* kResets[] = {"zigbee", "zwave", "both", "all"};  // in the order of reset_type
  const int number = parseNumber(argument).value_or(-1);
  if (call == "finish" && number >= 0) return number == DEVTYPE_UNKNOWN ? "the proposed type" : typeName(number);
  const bool isReset = call == "reset" && number >= reset_zigbee && number <= reset_both_and_remove_all;
  return isReset ? kResets[number - reset_zigbee] : argument;
}

std::string callText(const Json& entry) {
  const std::string call = textOf(entry, "call");
  std::string text = "called " + call;
  if (const auto arguments = entry.find("arguments"); arguments != entry.end() && arguments->is_array()) {
    for (const Json& each : *arguments) {
      const std::string argument = each.is_string() ? each.get<std::string>() : each.dump();
      text += " " + (&each == &arguments->front() ? firstArgument(call, argument) : argument);
    }
  }
  const long long error = integerOf(entry, "error");
  return error == 0 ? text : text + ": " + std::strerror(static_cast<int>(error));
}

std::string textOfEntry(const Json& entry, const std::string& line) {
  if (!entry.is_object()) return line;
  if (const auto event = entry.find("event"); event != entry.end()) return watchedText(event->dump());
  if (entry.contains("holder")) return watchedText(line);
  if (entry.contains("call")) return callText(entry);
  return entry.contains("log") ? "log, " + textOf(entry, "level") + ": " + textOf(entry, "log") : line;
}

}  // namespace

std::string entryText(const std::string& line) { return textOfEntry(Json::parse(line, nullptr, false), line); }

std::string timedEntryText(long long time, const std::string& line) {
  char milliseconds[8] = {};
  std::snprintf(milliseconds, sizeof milliseconds, ".%03d  ", static_cast<int>(time / 1000 % 1000));
  return clockText(time / 1000000) + milliseconds + entryText(line);
}

std::string timedEntryText(const std::string& line) {
  return timedEntryText(integerOf(Json::parse(line, nullptr, false), "wall_us"), line);
}

std::string clockText(long long seconds) {
  const auto moment = static_cast<std::time_t>(seconds);
  char text[32] = {};
  std::tm local{};
  std::strftime(text, sizeof text, "%H:%M:%S", localtime_r(&moment, &local));
  return text;
}

}  // namespace tembra::cli
