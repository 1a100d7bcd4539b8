// Texts that would steer a terminal, and texts that would not.
#include "platform/printable.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using tembra::printable;

std::string utf8(unsigned code) {
  std::string text;
  if (code < 0x800) {
    text += static_cast<char>(0xC0U | code >> 6U);
  } else {
    text += static_cast<char>(0xE0U | code >> 12U);
    text += static_cast<char>(0x80U | (code >> 6U & 0x3FU));
  }
  return text += static_cast<char>(0x80U | (code & 0x3FU));
}

TEST(Printable, ReplacesEveryControlCharacter) {
  for (unsigned code = 0; code < 0xA0; ++code) {
    const bool control = code < 0x20 || code >= 0x7F;
    const std::string byte(1, static_cast<char>(code));
    EXPECT_EQ(printable("a" + byte + "b"), control ? "a?b" : "a" + byte + "b") << code;
    if (code >= 0x80) {
      EXPECT_EQ(printable("a" + utf8(code) + "b"), "a?b") << code;
    }
  }
}

TEST(Printable, ReplacesWhatChangesTheOrderOfALine) {
  for (const unsigned code : {0x061CU, 0x200EU, 0x200FU, 0x2028U, 0x2029U, 0x202AU, 0x202BU, 0x202CU, 0x202DU, 0x202EU,
                              0x2066U, 0x2067U, 0x2068U, 0x2069U}) {
    EXPECT_EQ(printable(utf8(code) + "moor", ' '), " moor") << code;
  }
}

TEST(Printable, LeavesOtherCharacters) {
  for (const unsigned code : {0xA0U, 0xE0U, 0x61BU, 0x61DU, 0x7FFU, 0x800U, 0x200DU, 0x2010U, 0x2027U, 0x202FU, 0x2065U,
                              0x206AU, 0xD7FFU, 0xE000U, 0xFFFDU}) {
    EXPECT_EQ(printable(utf8(code)), utf8(code)) << code;
  }
  EXPECT_EQ(printable("\xF0\x9F\x8F\xA0 Flur"), "\xF0\x9F\x8F\xA0 Flur");
  EXPECT_EQ(printable(""), "");
}

struct Malformed {
  const char* what;
  std::string text;
  std::string shown;
};

const Malformed kMalformed[] = {
    {"a control character in too many bytes",
     "\xE0\x82\x9B"
     "31m",
     "\xE0??31m"},
    {"the same in four", "\xF0\x80\x82\x9B", "\xF0???"},
    {"too many bytes for an ASCII character", "\xC1\x9B", "\xC1?"},
    {"a surrogate", "\xED\xA0\x80", "\xED\xA0?"},
    {"beyond the last character", "\xF4\x90\x80\x80", "\xF4???"},
    {"bytes that begin nothing", "\xF8\x88\x80\x80\x80\xFF", "\xF8????\xFF"},
    {"cut in the middle", "Lamp \xE2\x80", "Lamp \xE2?"},
    {"a beginning behind a beginning", "\xE2\xC2\x9B", "\xE2?"},
    {"Latin-1", "T\xFCr", "T\xFCr"},
};

TEST(Printable, TakesBytesThatAreNoCharacterOneByOne) {
  for (const Malformed& row : kMalformed) EXPECT_EQ(printable(row.text), row.shown) << row.what;
}

}  // namespace
