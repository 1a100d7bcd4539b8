// The tokenizer of JSON objects by itself.
#include <gtest/gtest.h>
#include <tembra/platform.h>

#include <climits>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace {

// A text that ends with its memory, and its tokens.
class Parsed {
 public:
  explicit Parsed(const std::string& text)
      : text_(text.begin(), text.end()),
        tokens_(parse_json2(text_.data(), static_cast<int>(text.size())), &std::free) {}

  [[nodiscard]] bool isObject() const { return tokens_ != nullptr; }

  /// The member's text; "(none)" when there is none. It must lie in the text that was parsed.
  [[nodiscard]] std::string operator[](const char* path) const {
    const JsonToken* token = find_json_token(tokens_.get(), path);
    if (token == nullptr) return "(none)";
    EXPECT_GE(token->ptr, text_.data());
    EXPECT_GE(token->len, 0);
    EXPECT_LE(token->ptr + token->len, text_.data() + text_.size());
    return {token->ptr, static_cast<std::size_t>(token->len)};
  }

 private:
  std::vector<char> text_;
  std::unique_ptr<JsonToken, decltype(&std::free)> tokens_;
};

constexpr const char* kGood = R"({"id":"a\"}b","internalipaddress":"10.0.0.1","n":[1,{"id":"in"}],"o":{"id":2}})";

}  // namespace

TEST(JsonTokensTest, MembersOfAnObject) {
  const Parsed object(R"({"id":"a1b2","internalipaddress":"10.0.0.1"})");
  EXPECT_EQ(object["id"], "a1b2");
  EXPECT_EQ(object["internalipaddress"], "10.0.0.1");
  for (const char* other : {"", "i", "ID", "idx", "a1b2", "10.0.0.1", "internalipaddres"}) {
    EXPECT_EQ(object[other], "(none)") << other;
  }
}

TEST(JsonTokensTest, ValuesAsTheyStand) {
  const Parsed object(R"({ "string" : "two words" , "empty":"","number":-1.5e3,"yes":true,"no":false,"nothing":null,)"
                      R"("array":[1, "x"],"object":{"a": 1},"escapes":"\"\\\/\b\u00e9\n","":"no name"})");
  EXPECT_EQ(object["string"], "two words");
  EXPECT_EQ(object["empty"], "");
  EXPECT_EQ(object["number"], "-1.5e3");
  EXPECT_EQ(object["yes"], "true");
  EXPECT_EQ(object["no"], "false");
  EXPECT_EQ(object["nothing"], "null");
  EXPECT_EQ(object["array"], R"([1, "x"])");
  EXPECT_EQ(object["object"], R"({"a": 1})");
  EXPECT_EQ(object["escapes"], R"(\"\\\/\b\u00e9\n)");
  EXPECT_EQ(object[""], "no name");
}

TEST(JsonTokensTest, OnlyMembersOfTheOutermostObjectAreFound) {
  const Parsed object(R"({"a":{"id":"inner"},"b":[{"id":"deeper"}],"c":"id","id":"outer","d":{"only":1}})");
  EXPECT_EQ(object["id"], "outer");
  EXPECT_EQ(object["only"], "(none)");
  EXPECT_EQ(object["inner"], "(none)");
  EXPECT_EQ(object["c"], "id");
  EXPECT_EQ(Parsed(R"({"x":"id","y":"z"})")["id"], "(none)") << "a value is no name";
  EXPECT_EQ(Parsed(R"({"x":["id","y"]})")["id"], "(none)");
}

TEST(JsonTokensTest, BracketsAndQuotesInTextsAreText) {
  const Parsed object(R"({"a":"}","b":"{[\"]}","\"c":"\\","d":"e"})");
  EXPECT_EQ(object["a"], "}");
  EXPECT_EQ(object["b"], R"({[\"]})");
  EXPECT_EQ(object[R"(\"c)"], R"(\\)");
  EXPECT_EQ(object["d"], "e");
}

TEST(JsonTokensTest, WhatFollowsTheObjectIsIgnored) {
  for (const char* rest : {"", " ", "]", "}", "rubbish", R"(,"id":"second"})", R"({"id":"second"})", "\"", "\\"}) {
    EXPECT_EQ(Parsed(std::string(R"({"id":"first"})") + rest)["id"], "first") << rest;
  }
  EXPECT_EQ(Parsed(std::string(R"({"id":"first"})") + '\0' + "rubbish")["id"], "first");
  EXPECT_TRUE(Parsed("{}").isObject());
  EXPECT_EQ(Parsed("{}")["id"], "(none)");
  EXPECT_EQ(Parsed(" \t\r\n{\"id\":\"x\"}")["id"], "x");
}

TEST(JsonTokensTest, NoObject) {
  const char* texts[] = {"",
                         " ",
                         "null",
                         "7",
                         "\"{}\"",
                         "[]",
                         "[{}]",
                         R"([{"id":1}])",
                         "}",
                         "]",
                         "}{",
                         "]{}",
                         "x{}",
                         ":{}",
                         ",{}",
                         "rubbish",
                         "{",
                         "{{",
                         "{]",
                         "[}",
                         R"({"id":"x")",
                         R"({"id":"x)",
                         R"({"id":"x"])",
                         R"({"id":"x\"})",
                         R"({"id":"x\)",
                         R"({"id":[1})",
                         R"({"id":{"a":1})",
                         R"({"id":rubbish})",
                         R"({"id":"\x"})",
                         R"({"id":"\u12g4"})"};
  for (const char* text : texts) EXPECT_FALSE(Parsed(text).isObject()) << text;
}

TEST(JsonTokensTest, EveryTruncationOfAGoodTextIsNoObject) {
  const std::string good(kGood);
  for (std::size_t length = 0; length < good.size(); ++length) {
    EXPECT_FALSE(Parsed(good.substr(0, length)).isObject()) << good.substr(0, length);
  }
  const Parsed whole(good);
  EXPECT_EQ(whole["id"], R"(a\"}b)");
  EXPECT_EQ(whole["internalipaddress"], "10.0.0.1");
  EXPECT_EQ(whole["n"], R"([1,{"id":"in"}])");
  EXPECT_EQ(whole["o"], R"({"id":2})");
}

// Whatever becomes of the text, a token lies within it (Parsed sees to that) and its memory is not left.
TEST(JsonTokensTest, AChangedByteIsNoDanger) {
  const std::string good(kGood);
  for (std::size_t at = 0; at < good.size(); ++at) {
    for (int byte = 0; byte < 256; ++byte) {
      std::string changed = good;
      changed[at] = static_cast<char>(byte);
      const Parsed parsed(changed);
      for (const char* path : {"id", "internalipaddress", "n", "o", ""}) {
        EXPECT_TRUE(parsed.isObject() || parsed[path] == "(none)");
      }
    }
  }
}

TEST(JsonTokensTest, ManyTokens) {
  constexpr int kMembers = 5000;
  std::string text = "{";
  for (int i = 0; i < kMembers; ++i) {
    text += (i == 0 ? "\"m" : ",\"m") + std::to_string(i) + "\":\"" + std::to_string(i * i) + '"';
  }
  const Parsed object(text + "}");
  ASSERT_TRUE(object.isObject());
  for (const int i : {0, 1, 2499, kMembers - 1}) {
    EXPECT_EQ(object[("m" + std::to_string(i)).c_str()], std::to_string(i * i));
  }
  EXPECT_EQ(object["m5000"], "(none)");
}

TEST(JsonTokensTest, DeepNesting) {
  constexpr std::size_t kDepth = 20000;
  const std::string open(kDepth, '[');
  const std::string close(kDepth, ']');
  EXPECT_EQ(Parsed(R"({"a":)" + open + close + R"(,"id":"x"})")["id"], "x");
  EXPECT_FALSE(Parsed(R"({"a":)" + open).isObject());
}

TEST(JsonTokensTest, TheLengthDecides) {
  const char text[] = R"({"id":"x"}  )";
  EXPECT_EQ(parse_json2(text, 0), nullptr);
  EXPECT_EQ(parse_json2(text, -1), nullptr);
  EXPECT_EQ(parse_json2(text, INT_MIN), nullptr);
  EXPECT_EQ(parse_json2(text, 9), nullptr);
  JsonToken* tokens = parse_json2(text, 10);
  EXPECT_NE(tokens, nullptr);
  std::free(tokens);
}

TEST(JsonTokensTest, NothingIsAskedOfNothing) {
  EXPECT_EQ(parse_json2(nullptr, 5), nullptr);
  EXPECT_EQ(find_json_token(nullptr, "id"), nullptr);
  JsonToken* tokens = parse_json2("{}", 2);
  EXPECT_EQ(find_json_token(tokens, nullptr), nullptr);
  std::free(tokens);
}
