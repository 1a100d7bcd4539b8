#include "cli/report/stand_ins.h"

#include <tembra/frontend.h>

#include <algorithm>
#include <cctype>
#include <nlohmann/json.hpp>
#include <utility>

#include "platform/printable.h"

namespace tembra::cli::report {
namespace {

constexpr std::size_t kShortest = 4;  // of what is replaced within a word

bool isWordByte(char c) {
  return std::isalnum(static_cast<unsigned char>(c)) != 0 || static_cast<unsigned char>(c) >= 0x80;
}

// "Siren", "Siren #4", "Default": what the library proposes says nothing about a home.
bool isProposed(const std::string& text) {
  const std::size_t number = text.find(" #");
  const std::string type = text.substr(0, number);
  const bool isNumbered =
      number == std::string::npos || text.find_first_not_of("0123456789", number + 2) == std::string::npos;
  return text == "Default" || (isNumbered && tembra_type_number(type.c_str()) != 0);
}

std::string inSmallLetters(std::string_view text) {
  std::string small(text);
  std::ranges::transform(small, small.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return small;
}

// "name12____" in as many bytes as the text has; of short ones "n12".
std::string makeStandIn(Secret kind, unsigned number, std::size_t size) {
  constexpr const char* kWords[] = {"name", "place", "user", "code"};
  const std::string word = kWords[static_cast<int>(kind)];
  const std::string digits = std::to_string(number);
  std::string text = (word.size() + digits.size() <= size ? word : word.substr(0, 1)) + digits;
  text.resize(size, '_');
  return text;
}

int hexadecimal(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  const int letter = std::tolower(static_cast<unsigned char>(c)) - 'a';
  return letter >= 0 && letter < 6 ? letter + 10 : -1;
}

// The bytes that stand there as pairs of digits, each with this separator in front but the first. Nothing: others do.
template <std::size_t Size>
bool readPairs(std::string_view text, std::string_view separator, std::array<unsigned char, Size>& bytes) {
  const std::size_t step = 2 + separator.size();
  if (text.size() < Size * step - separator.size()) return false;
  for (std::size_t i = 0; i < Size; ++i) {
    const int high = hexadecimal(text[i * step]);
    const int low = hexadecimal(text[i * step + 1]);
    const bool isSeparated = i == 0 || text.substr(i * step - separator.size(), separator.size()) == separator;
    if (high < 0 || low < 0 || !isSeparated) return false;
    bytes[i] = static_cast<unsigned char>(high * 16 + low);
  }
  return true;
}

using Mac = std::array<unsigned char, 6>;

// "02a1b20c0001" and "02a1.b20c.0001", as a word of its own. Without a letter it is a time.
bool readBare(std::string_view text, Mac& mac) {
  std::string digits(text.substr(0, 14));
  const bool isDotted = digits.size() == 14 && digits[4] == '.' && digits[9] == '.';
  if (isDotted) digits.erase(9, 1).erase(4, 1);
  const std::size_t length = isDotted ? 14 : 12;
  digits.resize(std::min<std::size_t>(digits.size(), 12));
  const bool hasLetter = digits.find_first_not_of("0123456789") != std::string::npos;
  return readPairs(digits, "", mac) && (isDotted || hasLetter) && (text.size() == length || !isWordByte(text[length]));
}

// How a MAC address may be written.
std::vector<std::string> writtenForms(const Mac& mac) {
  constexpr char kDigits[] = "0123456789abcdef";
  std::vector<std::string> forms;
  struct Form {
    const char* between;
    std::size_t every;  ///< so many bytes
  };
  for (const auto& [between, every] : {Form{":", 1}, Form{"-", 1}, Form{"", 1}, Form{".", 2}, Form{"fffe", 3}}) {
    std::string text;
    for (std::size_t i = 0; i < mac.size(); ++i) {
      if (i > 0 && i % every == 0) text += between;
      text += {kDigits[mac[i] / 16], kDigits[mac[i] % 16]};
    }
    forms.push_back(text);
    std::ranges::transform(text, text.begin(), [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    forms.push_back(text);
  }
  return forms;
}

std::string bytesOf(const Mac& mac) { return {mac.begin(), mac.end()}; }

template <typename Array>
Array reversed(Array bytes) {
  std::ranges::reverse(bytes);
  return bytes;
}

}  // namespace

void StandIns::addRule(const std::string& text, const std::string& standIn, Content content) {
  auto& rules = (content == Content::kText ? rules_ : byteRules_)[static_cast<unsigned char>(text.front())];
  const auto behind = std::ranges::find_if(rules, [&text](const Rule& rule) { return rule.text.size() < text.size(); });
  if (std::ranges::none_of(rules, [&text](const Rule& rule) { return rule.text == text; }))
    rules.insert(behind, {text, standIn});
}

void StandIns::keepWordsOf(std::string_view text) {
  std::string word;
  for (const char c : inSmallLetters(text) + " ") {
    if (isWordByte(c) || c == '-') {
      word += c;
    } else if (!word.empty()) {
      ownWords_.insert(std::exchange(word, ""));
    }
  }
}

bool StandIns::isOfEveryReport(const std::string& text) const {
  constexpr std::size_t kLongestNumber = 3;
  const bool isNumber = text.find_first_not_of("0123456789") == std::string::npos;
  return text.size() <= (isNumber ? kLongestNumber : 1) || ownWords_.contains(inSmallLetters(text));
}

// As it may be written elsewhere: in JSON, and in lines that lost what steers a terminal.
void StandIns::learn(Secret kind, const std::string& text) {
  if (text.empty() || standIns_.contains(text) || isProposed(text)) return;
  using Json = nlohmann::json;
  const unsigned number = ++counts_[static_cast<int>(kind)];
  standIns_[text] = makeStandIn(kind, number, text.size());
  if ((kind == Secret::kName || kind == Secret::kPlace) && isOfEveryReport(text)) return;
  std::vector<std::string> forms = {text, printable(text), printable(text, ' ')};
  for (const bool isAscii : {true, false}) {
    const std::string quoted = Json(text).dump(-1, ' ', isAscii, Json::error_handler_t::replace);
    forms.push_back(quoted.substr(1, quoted.size() - 2));
  }
  for (const std::string& form : forms) addRule(form, makeStandIn(kind, number, form.size()));
}

void StandIns::learnMac(const Mac& mac) {
  const bool isOfNobody = std::ranges::all_of(mac, [&mac](unsigned char byte) { return byte == mac[0]; });
  if (isOfNobody || macs_.contains(mac)) return;
  const auto number = static_cast<unsigned>(macs_.size() + 1);
  macs_[mac] = number;
  const Mac standIn = {2, 0, 0, 0, static_cast<unsigned char>(number >> 8U), static_cast<unsigned char>(number)};
  for (const auto& [from, to] : {std::pair{mac, standIn}, std::pair{reversed(mac), reversed(standIn)}}) {
    const std::vector<std::string> texts = writtenForms(from);
    const std::vector<std::string> others = writtenForms(to);
    for (std::size_t i = 0; i < texts.size(); ++i) addRule(texts[i], others[i]);
    addRule(bytesOf(from), bytesOf(to), Content::kBytes);
  }
}

void StandIns::learnMacs(std::string_view text) {
  for (std::size_t at = 0; at + 12 <= text.size(); ++at) {
    if (hexadecimal(text[at]) < 0 || (at > 0 && hexadecimal(text[at - 1]) >= 0)) continue;
    const std::string_view rest = text.substr(at);
    Mac mac{};
    std::array<unsigned char, 8> bridge{};
    const bool isWord = at == 0 || !isWordByte(text[at - 1]);
    if (readPairs(rest, ":", mac) || readPairs(rest, "-", mac) || (isWord && readBare(rest, mac))) learnMac(mac);
    if (readPairs(rest, "", bridge) && bridge[3] == 0xFF && bridge[4] == 0xFE) {
      learnMac({bridge[0], bridge[1], bridge[2], bridge[5], bridge[6], bridge[7]});
    }
  }
}

std::string StandIns::of(const std::string& text) const {
  const auto found = standIns_.find(text);
  return found == standIns_.end() ? replaced(text) : found->second;
}

const StandIns::Rule* StandIns::ruleAt(std::string_view text, std::size_t at, Content content) const {
  const auto first = static_cast<unsigned char>(text[at]);
  if (content == Content::kBytes) {
    for (const Rule& rule : byteRules_[first]) {
      if (text.substr(at).starts_with(rule.text)) return &rule;
    }
  }
  for (const Rule& rule : rules_[first]) {
    if (!text.substr(at).starts_with(rule.text)) continue;
    if (rule.text.size() >= kShortest) return &rule;
    const std::size_t end = at + rule.text.size();
    const bool isWord = (at == 0 || !isWordByte(text[at - 1])) && (end == text.size() || !isWordByte(text[end]));
    if (isWord && content == Content::kText) return &rule;
  }
  return nullptr;
}

void StandIns::replace(char* text, std::size_t size, Content content) const {
  const std::string before(text, size);
  for (std::size_t at = 0; at < size;) {
    const Rule* const rule = ruleAt(before, at, content);
    if (rule != nullptr) rule->standIn.copy(text + at, rule->standIn.size());
    at += rule != nullptr ? rule->text.size() : 1;
  }
}

std::string StandIns::replaced(std::string_view text) const {
  std::string copy(text);
  replace(copy.data(), copy.size(), Content::kText);
  return copy;
}

void StandIns::replaceIn(char* bytes, std::size_t size) const { replace(bytes, size, Content::kBytes); }

}  // namespace tembra::cli::report
