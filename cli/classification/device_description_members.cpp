#include "cli/classification/device_description_members.h"

#include <cmath>
#include <cstdint>

#include "cli/failure.h"
#include "cli/words/numbers.h"
#include "cli/words/texts.h"

namespace tembra::cli {
namespace {

constexpr std::size_t kLongestQuoted = 40;
constexpr double kLargest = 0xFFFF;

std::optional<std::int64_t> numberIn(const nlohmann::json& value) {
  if (value.is_number_integer()) return value.get<std::int64_t>();
  if (value.is_number_float() && std::abs(value.get<double>()) <= kLargest) {
    const auto whole = value.get<std::int64_t>();
    return static_cast<double>(whole) == value.get<double>() ? std::optional(whole) : std::nullopt;  // as in 1.0
  }
  if (!value.is_string()) return std::nullopt;
  const auto text = value.get<std::string>();
  const bool hexadecimal = text.starts_with("0x") || text.starts_with("0X");
  return hexadecimal ? parseNumber(text) : std::nullopt;
}

}  // namespace

bool isDescribedNumber(const nlohmann::json& value) { return numberIn(value).has_value(); }

void refuseDescription(const std::string& why) { throw Failure(kFailed, "the device description " + why + "."); }

void refuseMember(const std::string& name, const std::string& possible) {
  refuseDescription("has a member \"" + cutText(name, kLongestQuoted) + "\"; possible: " + possible);
}

int describedNumber(const nlohmann::json& value, const std::string& name, int least, int most) {
  const std::optional<std::int64_t> number = numberIn(value);
  if (!number || *number < least || *number > most) {
    refuseDescription("needs a number from " + std::to_string(least) + " to " + std::to_string(most) + " for " + name);
  }
  return static_cast<int>(*number);
}

int describedClass(const nlohmann::json& value, const std::string& name, int least, int most,
                   std::optional<int> (*numberOf)(std::string_view name)) {
  for (const char* member : {"id", "cluster_id"}) {
    if (value.is_object() && value.contains(member)) return describedNumber(value[member], name, least, most);
  }
  if (!value.is_string() || numberIn(value)) return describedNumber(value, name, least, most);
  const auto text = value.get<std::string>();
  const std::optional<int> number = numberOf(text);
  if (!number) refuseDescription("names " + name + " \"" + cutText(text, kLongestQuoted) + "\", which is not known");
  return *number;
}

const nlohmann::json& describedList(const nlohmann::json& value, const std::string& name, std::size_t most) {
  if (!value.is_array()) refuseDescription("needs a list for " + name);
  if (value.size() > most) {
    refuseDescription("has " + std::to_string(value.size()) + " " + name + ", the record has room for " +
                      std::to_string(most));
  }
  return value;
}

std::string describedText(const nlohmann::json& value, const std::string& name, std::size_t room, Remarks& remarks) {
  if (value.is_null()) return "";
  if (!value.is_string()) refuseDescription("needs a text for " + name);
  const auto whole = value.get<std::string>();
  std::string text = cutText(whole, room - 1);
  if (text != whole) {
    remarks.push_back(name + " cut to the " + std::to_string(text.size()) + " bytes that fit: \"" + text + "\"");
  }
  return text;
}

}  // namespace tembra::cli
