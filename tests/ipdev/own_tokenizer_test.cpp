// A router's own JSON tokenizer instead of ours: what it is asked, and that its tokens are not trusted.
#include <gtest/gtest.h>
#include <tembra/platform.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>

#include "kit/router.h"
#include "wire.h"

using kit::Router;

namespace {

// The tokenizer of this program: what it finds in each text, and what it was asked.
struct Tokenizer {
  std::map<std::string, std::string> members;  // of every object
  bool findsNoObject = false;
  std::string asked;
};

Tokenizer tokenizer;

// A token's text ends where its memory ends.
JsonToken* tokenOf(const std::string& text) {
  auto* token = static_cast<JsonToken*>(std::malloc(sizeof(JsonToken) + text.size()));
  std::copy(text.begin(), text.end(), reinterpret_cast<char*>(token + 1));
  *token = {reinterpret_cast<const char*>(token + 1), static_cast<int>(text.size())};
  return token;
}

std::string askedFor(Router& router, const std::vector<std::string>& entries) {
  tokenizer.asked.clear();
  router.hue().send(hueAnswer(0, static_cast<int>(entries.size()), entries));
  return tokenizer.asked;
}

}  // namespace

// The array of an entry is its "id" token, so that its release is seen by a leak checker; the address is one of ours.
JsonToken* parse_json2(const char* text, int length) {
  tokenizer.asked += "parse " + std::string(text, static_cast<std::size_t>(length)) + "\n";
  return tokenizer.findsNoObject ? nullptr : tokenOf(tokenizer.members["id"]);
}

JsonToken* find_json_token(JsonToken* tokens, const char* path) {
  tokenizer.asked += "find " + std::string(path) + "\n";
  static JsonToken address;
  const auto found = tokenizer.members.find(path);
  if (found == tokenizer.members.end()) return nullptr;
  if (std::strcmp(path, "id") == 0) return tokens;
  address = {found->second.data(), static_cast<int>(found->second.size())};
  return &address;
}

TEST(OwnTokenizerTest, EachEntryIsParsedOnceAndTwoMembersAreLookedUp) {
  tokenizer.members = {{"id", "a1b2c3fffe0a1b01"}, {"internalipaddress", "10.0.0.1"}};
  Router router;
  router.connect();
  EXPECT_EQ(askedFor(router, {"one", "", std::string(65, 'x')}),
            "parse one\nfind id\nfind internalipaddress\n"
            "parse \nfind id\nfind internalipaddress\n"
            "parse " +
                std::string(65, 'x') + "\nfind id\nfind internalipaddress\n");
  const Slot slot{"a1:b2:c3:0a:1b:01", "10.0.0.1"};
  EXPECT_EQ(payloadOf(router.takeEvents().at(0)), payloadOf(bridgeList({slot, slot, slot})));
}

TEST(OwnTokenizerTest, WithoutAnObjectNothingIsLookedUp) {
  tokenizer.findsNoObject = true;
  Router router;
  router.connect();
  EXPECT_EQ(askedFor(router, {"one", "two"}), "parse one\nparse two\n");
  EXPECT_EQ(payloadOf(router.takeEvents().at(0)), payloadOf(bridgeList({{"", ""}, {"", ""}})));
}

TEST(OwnTokenizerTest, TheTwoMembersAreLookedUpIndependently) {
  tokenizer.members = {{"internalipaddress", "10.0.0.1"}};
  Router router;
  router.connect();
  EXPECT_EQ(askedFor(router, {"one"}), "parse one\nfind id\nfind internalipaddress\n");
  EXPECT_EQ(payloadOf(router.takeEvents().at(0)), payloadOf(bridgeList({{"", "10.0.0.1"}})));
}

TEST(OwnTokenizerTest, LongTokensAreCutAtTheSlot) {
  Router router;
  router.connect();
  for (const std::size_t length : {0U, 1U, 29U, 30U, 48U, 49U, 50U, 51U, 64U, 65U, 5000U}) {
    tokenizer.members = {{"id", std::string(length, 'f')}, {"internalipaddress", std::string(length, '9')}};
    askedFor(router, {"one"});
    const std::string mac = length == 0 ? "" : length == 1 ? "f" : "ff:ff:ff:ff:ff:ff";
    EXPECT_EQ(payloadOf(router.takeEvents().at(0)),
              payloadOf(bridgeList({{mac, std::string(std::min<std::size_t>(length, 49), '9')}})))
        << length;
  }
}
