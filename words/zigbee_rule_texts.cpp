#include "words/zigbee_rule_texts.h"

namespace tembra::words {
namespace {

std::string quoted(const char* text) { return std::string(1, '"').append(text).append(1, '"'); }

std::string testText(const ZbTest& test) {
  switch (test.kind) {
    case ZB_ALWAYS:
      return "";
    case ZB_TYPE_IS:
      return "type is " + std::to_string(test.type);
    case ZB_TYPE_IS_NOT:
      return "type is not " + std::to_string(test.type);
    case ZB_MANUFACTURER_IS:
      return "manufacturer is " + quoted(test.text);
    case ZB_MANUFACTURER_IS_NOT:
      return "manufacturer is not " + quoted(test.text);
    case ZB_MANUFACTURER_HAS:
      return "manufacturer contains " + quoted(test.text);
    case ZB_MODEL_HAS:
      return "model contains " + quoted(test.text);
    case ZB_MAKERS_PLUG:
      return "the maker's own plug";
    case ZB_AC_CHECK_FAILS:
      return "measured values missing";
  }
  return "";
}

}  // namespace

std::string hex4(int number) {
  static constexpr char kDigits[] = "0123456789ABCDEF";
  const auto bits = static_cast<unsigned>(number);
  std::string text = "0x";
  for (const unsigned shift : {12U, 8U, 4U, 0U}) text += kDigits[bits >> shift & 15U];
  return text;
}

std::string testsText(const ZbTest& first, const ZbTest& second) {
  const std::string a = testText(first);
  const std::string b = testText(second);
  if (a.empty()) return "otherwise";
  return b.empty() ? a : a + " and " + b;
}

std::string outcomeText(const ZbDecision& decision) {
  if (decision.effect == ZB_STOP) return "classification fails";
  const std::string type = decision.type == ZB_KEEP_TYPE ? "type stays" : "type " + std::to_string(decision.type);
  return decision.name == nullptr ? type : "name " + quoted(decision.name) + ", " + type;
}

std::string entriesText(const unsigned char* entries, std::size_t count) {
  std::string text;
  for (std::size_t i = 0; i < count && entries[i] != 0; ++i) {
    text += (text.empty() ? "" : ", ") + std::to_string(entries[i]);
  }
  return text.empty() ? "none" : text;
}

}  // namespace tembra::words
