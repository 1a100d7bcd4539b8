// The rows of <tembra/rules.h> in words, for the pages and for users who ask why.
#ifndef TEMBRA_WORDS_ZIGBEE_RULE_TEXTS_H
#define TEMBRA_WORDS_ZIGBEE_RULE_TEXTS_H

#include <tembra/rules.h>

#include <cstddef>
#include <string>

namespace tembra::words {

/// "0x0B04"
[[nodiscard]] std::string hex4(int number);

/// "manufacturer is "NYCE" and model contains "3041""; "otherwise" when nothing is tested.
[[nodiscard]] std::string testsText(const ZbTest& first, const ZbTest& second = {});

/// "name "BinarySwitch", type 1"
[[nodiscard]] std::string outcomeText(const ZbDecision& decision);

/// "3, 12, 9"; "none" without any.
[[nodiscard]] std::string entriesText(const unsigned char* entries, std::size_t count);

template <std::size_t Count>
[[nodiscard]] std::string entriesText(const unsigned char (&entries)[Count]) {
  return entriesText(entries, Count);
}

}  // namespace tembra::words

#endif
