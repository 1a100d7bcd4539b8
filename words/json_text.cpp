#include "words/json_text.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <nlohmann/json.hpp>
#include <set>
#include <vector>

namespace tembra::words {
namespace {

using nlohmann::json;

/// Tells how far the parser has read.
class Reader {
 public:
  using iterator_category = std::input_iterator_tag;
  using value_type = char;
  using difference_type = std::ptrdiff_t;
  using pointer = const char*;
  using reference = const char&;

  Reader(const char* next, const char*& reached) : next_(next), reached_(&reached) {}
  reference operator*() const { return *next_; }
  Reader& operator++() {
    *reached_ = ++next_;
    return *this;
  }
  bool operator==(const Reader& other) const { return next_ == other.next_; }

 private:
  const char* next_;
  const char** reached_;
};

bool beginsCharacter(char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; }

[[noreturn]] void refuse(const std::string& why, const std::string& text, std::size_t at) {
  const std::string before = text.substr(0, at);
  const auto line = 1 + std::ranges::count(before, '\n');
  const auto column = 1 + std::ranges::count_if(before.substr(before.rfind('\n') + 1), beginsCharacter);
  throw JsonFault(why + ": see line " + std::to_string(line) + ", column " + std::to_string(column));
}

// Where the text begins that ends with the quotation mark before `end`.
std::size_t beginOfQuoted(const std::string& text, std::size_t end) {
  std::size_t begin = end - 1;
  do {
    begin = text.rfind('"', begin - 1);
  } while (text[begin - 1] == '\\');  // a member's name follows "{", "," or a blank
  return begin;
}

/// The names of the objects that the parser is in.
class Names {
 public:
  /// False for a name that its object has already.
  bool take(json::parse_event_t event, const json& parsed) {
    if (event == json::parse_event_t::object_start) objects_.emplace_back();
    if (event == json::parse_event_t::object_end) objects_.pop_back();
    return event != json::parse_event_t::key || objects_.back().insert(parsed.get<std::string>()).second;
  }

 private:
  std::vector<std::set<std::string>> objects_;
};

}  // namespace

json parseJson(const std::string& text) {
  const char* const begin = text.data();
  const char* reached = begin;
  Names names;
  const auto check = [&](int /*depth*/, json::parse_event_t event, const json& parsed) {
    if (names.take(event, parsed)) return true;
    const std::size_t at = beginOfQuoted(text, static_cast<std::size_t>(reached - begin));
    refuse("has the member " + parsed.dump() + " twice", text, at);
  };
  try {
    json value = json::parse(Reader(begin, reached), Reader(begin + text.size(), reached), check);
    const std::size_t nothing = text.find('\0');  // the parser would take it for the end
    if (nothing != std::string::npos) refuse("is no JSON text", text, nothing);
    return value;
  } catch (const json::parse_error& error) {
    refuse("is no JSON text", text, error.byte == 0 ? 0 : error.byte - 1);
  } catch (const json::out_of_range&) {  // the parser's only one: no double holds the number
    refuse("has a number that is too large", text, static_cast<std::size_t>(reached - begin) - 1);
  }
}

}  // namespace tembra::words
