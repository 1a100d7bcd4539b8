#include "json_scan.h"

#include <algorithm>
#include <charconv>
#include <cstdint>

namespace tembra::frontend {
namespace {

constexpr int kDeepest = 16;

class Scanner {
 public:
  Scanner(std::string_view json, std::initializer_list<Wanted> wanted) : rest_(json), wanted_(wanted) {}

  bool scan() {
    skipBlanks();
    return next() == '{' && value("", 0) && rest_.empty();
  }

 private:
  [[nodiscard]] char next() const { return rest_.empty() ? '\0' : rest_.front(); }

  void skipBlanks() { rest_.remove_prefix(std::min(rest_.find_first_not_of(" \t\r\n"), rest_.size())); }

  bool take(char expected) {
    if (next() != expected) return false;
    rest_.remove_prefix(1);
    skipBlanks();
    return true;
  }

  bool value(const std::string& place, int depth) {
    if (depth > kDeepest) return false;
    if (next() == '{') return members(place, depth, '{', '}');
    if (next() == '[') return members(place, depth, '[', ']');
    if (next() != '"') return word(place);
    std::string text;
    if (!string(text)) return false;
    for (const Wanted& each : wanted_) {
      if (each.text != nullptr && each.place == place) *each.text = text;
    }
    return true;
  }

  bool members(const std::string& place, int depth, char open, char close) {
    if (!take(open)) return false;
    if (take(close)) return true;
    do {
      std::string key;
      if (open == '{' && !(string(key) && take(':'))) return false;
      const bool isPlain = key.find('/') == std::string::npos;  // else it would look like two keys
      if (!value(isPlain ? place + '/' + key : "?", depth + 1)) return false;
    } while (take(','));
    return take(close);
  }

  /// A number, true, false or null.
  bool word(const std::string& place) {
    const std::string_view word = rest_.substr(0, rest_.find_first_of(" \t\r\n,]}"));
    long long number = 0;
    const char* const end = word.data() + word.size();
    const auto [behind, failure] = std::from_chars(word.data(), end, number);
    const bool isWhole = failure == std::errc() && behind == end;
    if (!isWhole && !isFraction(word) && word != "true" && word != "false" && word != "null") return false;
    for (const Wanted& each : wanted_) {
      if (isWhole && each.number != nullptr && each.place == place) *each.number = number;
    }
    rest_.remove_prefix(word.size());
    skipBlanks();
    return true;
  }

  static bool isFraction(std::string_view word) {
    const bool begins = !word.empty() && (word.front() == '-' || (word.front() >= '0' && word.front() <= '9'));
    return begins && word.find_first_not_of("+-.0123456789eE") == std::string_view::npos;
  }

  bool string(std::string& text) {
    if (next() != '"') return false;
    rest_.remove_prefix(1);
    while (!rest_.empty() && next() != '"') {
      if (static_cast<unsigned char>(next()) < ' ' || !character(text)) return false;
    }
    return take('"');
  }

  bool character(std::string& text) {
    if (next() != '\\') {
      text += next();
      rest_.remove_prefix(1);
      return true;
    }
    rest_.remove_prefix(1);
    static constexpr std::string_view kEscapes = "\"\\/bfnrt";
    static constexpr std::string_view kMeanings = "\"\\/\b\f\n\r\t";
    const std::size_t which = kEscapes.find(next());
    if (next() == 'u') return escapedUnit(text);
    if (rest_.empty() || which == std::string_view::npos) return false;
    text += kMeanings[which];
    rest_.remove_prefix(1);
    return true;
  }

  bool escapedUnit(std::string& text) {
    std::uint32_t number = 0;
    if (!unit(number)) return false;
    const bool leads = number >= 0xD800 && number < 0xDC00;
    std::uint32_t second = 0;
    if (leads && !(rest_.substr(0, 2) == "\\u" && (rest_.remove_prefix(1), unit(second)))) return false;
    if (leads && (second < 0xDC00 || second > 0xDFFF)) return false;
    if (!leads && number >= 0xDC00 && number < 0xE000) return false;
    append(text, leads ? 0x10000 + ((number - 0xD800) << 10) + (second - 0xDC00) : number);
    return true;
  }

  /// "uXXXX", whose backslash was read.
  bool unit(std::uint32_t& number) {
    const std::string_view digits = rest_.substr(0, 5);
    const char* const end = digits.data() + digits.size();
    if (digits.size() != 5 || std::from_chars(digits.data() + 1, end, number, 16).ptr != end) return false;
    rest_.remove_prefix(digits.size());
    return true;
  }

  static void append(std::string& text, std::uint32_t number) {
    static constexpr std::uint32_t kLimits[] = {0x80, 0x800, 0x10000};
    static constexpr unsigned char kLeads[] = {0x00, 0xC0, 0xE0, 0xF0};
    std::size_t more = 0;
    while (more < 3 && number >= kLimits[more]) ++more;
    text += static_cast<char>(kLeads[more] | number >> (6 * more));
    while (more-- > 0) text += static_cast<char>(0x80 | (number >> (6 * more) & 0x3F));
  }

  std::string_view rest_;
  std::initializer_list<Wanted> wanted_;
};

}  // namespace

bool scanJson(std::string_view json, std::initializer_list<Wanted> wanted) { return Scanner(json, wanted).scan(); }

}  // namespace tembra::frontend
