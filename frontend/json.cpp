#include "json.h"

#include "texts.h"

namespace tembra::frontend {
namespace {

constexpr char kHexadecimal[] = "0123456789abcdef";

bool endsElement(char last) { return last != '{' && last != '['; }

}  // namespace

// In ASCII: every other character stands there as an escape, so that no reader and no terminal can stumble over it.
void JsonWriter::string(std::string_view text) {
  const auto escape = [this](unsigned unit) {
    text_ += "\\u";
    for (int shift = 12; shift >= 0; shift -= 4) text_ += kHexadecimal[unit >> shift & 0xF];
  };
  const std::string clean = cleaned(text);
  text_ += '"';
  for (std::size_t i = 0; i < clean.size();) {
    const Character character = firstCharacter(std::string_view(clean).substr(i));
    i += character.length;
    const char32_t number = character.number;
    if (number == '"' || number == '\\') {
      text_ += '\\';
      text_ += static_cast<char>(number);
    } else if (number >= 0x20 && number < 0x7F) {
      text_ += static_cast<char>(number);
    } else if (number < 0x10000) {
      escape(number);
    } else {
      escape(0xD800 + ((number - 0x10000) >> 10));
      escape(0xDC00 + ((number - 0x10000) & 0x3FF));
    }
  }
  text_ += '"';
}

void JsonWriter::name(std::string_view name) {
  if (!text_.empty() && endsElement(text_.back())) text_ += ',';
  if (name.empty()) return;
  string(name);
  text_ += ':';
}

JsonWriter& JsonWriter::member(std::string_view key, std::string_view text) {
  name(key);
  string(text);
  return *this;
}

JsonWriter& JsonWriter::member(std::string_view key, const char* text) {
  return text == nullptr ? null(key) : member(key, std::string_view(text));
}

JsonWriter& JsonWriter::member(std::string_view key, long long number) {
  name(key);
  text_ += std::to_string(number);
  return *this;
}

JsonWriter& JsonWriter::flag(std::string_view key, bool value) {
  name(key);
  text_ += value ? "true" : "false";
  return *this;
}

JsonWriter& JsonWriter::null(std::string_view key) {
  name(key);
  text_ += "null";
  return *this;
}

JsonWriter& JsonWriter::begin(std::string_view key, char open) {
  name(key);
  text_ += open;
  return *this;
}

JsonWriter& JsonWriter::end(char close) {
  text_ += close;
  return *this;
}

}  // namespace tembra::frontend
