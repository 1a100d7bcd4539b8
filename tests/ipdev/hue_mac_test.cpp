// Bridge id and MAC text, both ways.
#include <gtest/gtest.h>
#include <tembra/hue.h>

#include <string>
#include <vector>

namespace {

using Convert = int (*)(char*, char*);

// What the function wrote, and that it left the bytes behind alone. The input stands at the end of its memory, so that
// a sanitizer sees a read behind its NUL.
std::string converted(Convert convert, const std::string& input, int length) {
  std::vector<char> text(input.begin(), input.end());
  text.push_back('\0');
  char out[50];
  std::fill(std::begin(out), std::end(out), '~');
  EXPECT_EQ(convert(text.data(), out), length);
  const auto end = static_cast<std::size_t>(length);
  EXPECT_EQ(out[end], '\0');
  EXPECT_EQ(std::string(out + end + 1, std::end(out)), std::string(sizeof out - end - 1, '~')) << input;
  return {out, end};
}

std::string toBridgeId(const std::string& mac) { return converted(&RevertHueMac, mac, 16); }
std::string toMac(const std::string& bridgeId) { return converted(&HueMac, bridgeId, 17); }

// A literal with NUL bytes in it.
template <std::size_t Size>
std::string bytes(const char (&literal)[Size]) {
  return {literal, Size - 1};
}

}  // namespace

TEST(HueMacTest, ThereAndBack) {
  EXPECT_EQ(toBridgeId("a1:b2:c3:0a:1b:2c"), "a1b2c3fffe0a1b2c");
  EXPECT_EQ(toMac("a1b2c3fffe0a1b2c"), "a1:b2:c3:0a:1b:2c");
}

TEST(HueMacTest, EachCharacterGoesToItsPlace) {
  EXPECT_EQ(toBridgeId("0123456789ABCDEFG"), "013467fffe9ACDFG");
  EXPECT_EQ(toMac("0123456789ABCDEF"), "01:23:45:AB:CD:EF");
}

TEST(HueMacTest, NothingIsCheckedOrChanged) {
  EXPECT_EQ(toBridgeId("A1-B2-C3-0A-1B-2C"), "A1B2C3fffe0A1B2C") << "neither colons nor case";
  EXPECT_EQ(toBridgeId("zz%nn\n?\"\\{}[]<>!"), "zznn?\"fffe{}]<!" + std::string(1, '\0'));
  EXPECT_EQ(toMac("a1b2c3XYZW0a1b2c"), "a1:b2:c3:0a:1b:2c") << "whatever is dropped";
  EXPECT_EQ(toMac("A1B2C3FFFE0A1B2C"), "A1:B2:C3:0A:1B:2C");
}

TEST(HueMacTest, WhatIsTooMuchIsNotRead) {
  EXPECT_EQ(toBridgeId("a1:b2:c3:0a:1b:2c" + std::string(5000, 'x')), "a1b2c3fffe0a1b2c");
  EXPECT_EQ(toMac("a1b2c3fffe0a1b2c" + std::string(5000, 'x')), "a1:b2:c3:0a:1b:2c");
}

TEST(HueMacTest, BehindTheEndOfAShortTextComesNul) {
  EXPECT_EQ(toBridgeId(""), bytes("\0\0\0\0\0\0fffe\0\0\0\0\0\0"));
  EXPECT_EQ(toBridgeId("a"), bytes("a\0\0\0\0\0fffe\0\0\0\0\0\0"));
  EXPECT_EQ(toBridgeId("a1"), bytes("a1\0\0\0\0fffe\0\0\0\0\0\0")) << "ends where a colon is dropped";
  EXPECT_EQ(toBridgeId("a1:b2"), bytes("a1b2\0\0fffe\0\0\0\0\0\0"));
  EXPECT_EQ(toBridgeId("a1:b2:c3"), bytes("a1b2c3fffe\0\0\0\0\0\0"));
  EXPECT_EQ(toBridgeId("a1:b2:c3:0a:1b:2"), bytes("a1b2c3fffe0a1b2\0"));
  EXPECT_EQ(toMac(""), bytes("\0\0:\0\0:\0\0:\0\0:\0\0:\0\0"));
  EXPECT_EQ(toMac("a1b"), bytes("a1:b\0:\0\0:\0\0:\0\0:\0\0"));
  EXPECT_EQ(toMac("a1b2c3"), bytes("a1:b2:c3:\0\0:\0\0:\0\0")) << "ends where the middle is dropped";
  EXPECT_EQ(toMac("a1b2c3fff"), bytes("a1:b2:c3:\0\0:\0\0:\0\0"));
  EXPECT_EQ(toMac("a1b2c3fffe0a1b2"), bytes("a1:b2:c3:0a:1b:2\0"));
}

// What needs no end is not searched for one: the text stands at the end of its memory, without a NUL.
TEST(HueMacTest, AWholeTextNeedsNoEnd) {
  const auto unended = [](const std::string& text) { return std::vector<char>(text.begin(), text.end()); };
  std::vector<char> bridgeId = unended("a1b2c3fffe0a1b2c");
  ASSERT_EQ(bridgeId.size(), 16U);
  char out[18];
  EXPECT_EQ(HueMac(bridgeId.data(), out), 17);
  EXPECT_STREQ(out, "a1:b2:c3:0a:1b:2c");
  std::vector<char> mac = unended("a1:b2:c3:0a:1b:2c");
  ASSERT_EQ(mac.size(), 17U);
  EXPECT_EQ(RevertHueMac(mac.data(), out), 16);
  EXPECT_STREQ(out, "a1b2c3fffe0a1b2c");
}

// Every length of a good text, against the rule: character i of the output is one character of the input.
TEST(HueMacTest, EveryLengthFollowsTheSameRule) {
  const std::vector<int> idPlaces = {0, 1, 3, 4, 6, 7, -1, -1, -1, -1, 9, 10, 12, 13, 15, 16};
  const std::vector<int> macPlaces = {0, 1, -1, 2, 3, -1, 4, 5, -1, 10, 11, -1, 12, 13, -1, 14, 15};
  const auto expected = [](const std::string& input, const std::vector<int>& places, std::string result) {
    for (std::size_t i = 0; i < places.size(); ++i) {
      const auto place = static_cast<std::size_t>(places[i]);
      if (places[i] >= 0) result[i] = place < input.size() ? input[place] : '\0';
    }
    return result;
  };
  for (std::size_t length = 0; length <= 40; ++length) {
    const std::string mac = std::string("a1:b2:c3:0a:1b:2cdefghijklmnopqrstuvwxyzABCD").substr(0, length);
    EXPECT_EQ(toBridgeId(mac), expected(mac, idPlaces, "......fffe......")) << mac;
    const std::string id = std::string("a1b2c3fffe0a1b2cdefghijklmnopqrstuvwxyzABCDE").substr(0, length);
    EXPECT_EQ(toMac(id), expected(id, macPlaces, "..:..:..:..:..:..")) << id;
  }
}
