#include "cli/report/json_secrets.h"

#include <algorithm>
#include <iterator>
#include <nlohmann/json.hpp>
#include <optional>

namespace tembra::cli::report {
namespace {

using Json = nlohmann::ordered_json;

struct Member {
  const char* name;
  Secret secret;
};
constexpr Member kSecrets[] = {{"name", Secret::kName}, {"device_name", Secret::kName}, {"place", Secret::kPlace},
                               {"user", Secret::kUser}, {"username", Secret::kUser},    {"code", Secret::kCode}};

constexpr const char* kWords[] = {"event", "operation", "phase", "outcome", "reason",  "radio",
                                  "level", "call",      "id",    "status",  "question"};

std::optional<Secret> secretOf(const std::string& member) {
  const auto* const found =
      std::ranges::find_if(kSecrets, [&member](const Member& each) { return member == each.name; });
  return found == std::end(kSecrets) ? std::nullopt : std::optional(found->secret);
}

bool isOwnWord(const std::string& member) { return std::ranges::find(kWords, member) != std::end(kWords); }

// {"number":42,"name":"Siren"}
bool isType(const Json& value) {
  return value.is_object() && value.size() == 2 && value.contains("number") && value.contains("name");
}

// What a program asked for: a name and a place, or a bridge and a bulb, between numbers.
void learnArguments(const Json& arguments, StandIns& standIns) {
  for (const Json& each : arguments) {
    if (!each.is_string()) continue;
    const auto text = each.get<std::string>();
    const bool isMac = text.size() == 17 && text[2] == ':';
    if (!isMac && text.find_first_not_of("0123456789") != std::string::npos) standIns.learn(Secret::kName, text);
  }
}

void learnMember(const std::string& member, const Json& value, StandIns& standIns) {
  const auto secret = secretOf(member);
  if (value.is_string() && secret) return standIns.learn(*secret, value.get<std::string>());
  if (member == "arguments" && value.is_array()) return learnArguments(value, standIns);
  learnFrom(value, standIns);
}

}  // namespace

void learnFrom(const Json& value, StandIns& standIns) {
  if (value.is_string()) standIns.learnMacs(value.get_ref<const std::string&>());
  if (isType(value) || !value.is_structured()) return;
  for (const auto& [member, each] : value.items()) learnMember(value.is_object() ? member : "", each, standIns);
}

Json replaced(const Json& value, const StandIns& standIns) {
  if (value.is_string()) return standIns.replaced(value.get<std::string>());
  if (isType(value) || !value.is_structured()) return value;
  Json copy = value;
  for (const auto& [member, each] : copy.items()) {
    const bool isSecret = value.is_object() && each.is_string() && secretOf(member);
    const bool isOwn = value.is_object() && isOwnWord(member) && !each.is_structured();
    if (isSecret) each = standIns.of(each.get<std::string>());
    if (!isSecret && !isOwn) each = replaced(each, standIns);
  }
  return copy;
}

}  // namespace tembra::cli::report
