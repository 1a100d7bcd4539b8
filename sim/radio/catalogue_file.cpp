#include "sim/radio/catalogue_file.h"

#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "words/json_text.h"

namespace tembra::sim {
namespace {

using nlohmann::json;

constexpr std::size_t kLongestLabel = 24;

json parsed(const std::filesystem::path& file) {
  require(!std::filesystem::is_directory(file), "is a folder");
  std::ifstream stream(file);
  require(stream.good(), "cannot be read");
  return words::parseJson({std::istreambuf_iterator<char>(stream), {}});
}

std::string quoted(const std::string& name) { return '"' + name + '"'; }

long long wholeNumberIn(const json& value) {
  require(value.is_number_integer(), value.dump() + " is not a number");
  return value.get<long long>();
}

// "0x0500"
long long hexadecimalIn(const std::string& text) {
  constexpr std::size_t kPrefix = 2;
  constexpr std::size_t kMostDigits = 8;
  const std::string digits = text.starts_with("0x") || text.starts_with("0X") ? text.substr(kPrefix) : "";
  const bool isNumber = !digits.empty() && digits.size() <= kMostDigits &&
                        digits.find_first_not_of("0123456789abcdefABCDEF") == std::string::npos;
  require(isNumber, json(text).dump() + " is not a number");
  return std::stoll(digits, nullptr, 16);
}

}  // namespace

void require(bool condition, const std::string& sentence) {
  if (!condition) throw std::runtime_error(sentence);
}

const json& memberOf(const json& entry, const std::string& name) {
  require(entry.is_object(), "is no object");
  require(entry.contains(name), "has no member " + quoted(name));
  return entry.at(name);
}

const json& listIn(const json& entry, const std::string& name) {
  const json& list = memberOf(entry, name);
  require(list.is_array(), quoted(name) + " is no list");
  return list;
}

std::string textIn(const json& entry, const std::string& name) {
  const json& text = memberOf(entry, name);
  require(text.is_string(), quoted(name) + " is no text");
  return text.get<std::string>();
}

int numberFrom(const json& value, int smallest, int largest) {
  const long long number = value.is_string() ? hexadecimalIn(value.get<std::string>()) : wholeNumberIn(value);
  require(number >= smallest && number <= largest,
          value.dump() + " is not from " + std::to_string(smallest) + " to " + std::to_string(largest));
  return static_cast<int>(number);
}

std::string labelOf(const json& entry) {
  std::string label = textIn(entry, "label");
  const bool plain = label.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789-") == std::string::npos;
  require(plain && !label.empty() && label.size() <= kLongestLabel && label.front() != '-',
          "a label has 1 to " + std::to_string(kLongestLabel) + " small letters, digits and hyphens");
  return label;
}

std::string_view labelIn(std::string_view name) {
  const std::size_t mark = name.find('#');
  const std::string_view number = mark == std::string_view::npos ? "1" : name.substr(mark + 1);
  constexpr std::size_t mostDigits = 4;
  if (number.empty() || number.size() > mostDigits) return {};
  if (number.find_first_not_of("0123456789") != std::string_view::npos) return {};
  return name.substr(0, mark);
}

void readCatalogue(const std::filesystem::path& file, const std::function<void(const json&)>& take) {
  std::string where;
  try {
    int count = 0;
    const json content = parsed(file);
    for (const json& entry : listIn(content, "devices")) {
      where = " (device " + std::to_string(++count) + ")";
      take(entry);
    }
  } catch (const std::exception& failure) {
    throw std::runtime_error("the catalogue " + file.string() + where + ": " + failure.what());
  }
}

}  // namespace tembra::sim
