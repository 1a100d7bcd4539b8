#include <tembra/platform.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "platform_check/checks.h"
#include "platform_check/memory.h"

namespace tembra::platform_check {
namespace {

using Tokens = std::unique_ptr<JsonToken, decltype(&std::free)>;

constexpr const char* kBridge = R"({"id":"00178801020a","internalipaddress":"192.168.1.20"})";

Tokens parsed(const char* text, std::size_t length) {
  return {parse_json2(text, static_cast<int>(length)), &std::free};
}

void checkParse(Trial& trial) {
  const std::string bridge = kBridge;
  for (const char* const behind : {"", " and more", R"(}{]")"}) {
    trial.tries("an object with " + quoted(behind) + " behind it, and no NUL");
    const std::string whole = bridge + behind;
    const EdgeText text(whole, EdgeText::End::kNone);
    const Tokens tokens = parsed(text.get(), whole.size());
    trial.expects(tokens != nullptr, "tokens", "null");
  }
  for (const std::string none : {"", "[1,2]", "word", "12", R"({"id":"a)", R"({"id")", "{"}) {
    trial.tries("the text " + quoted(none) + ", which has no whole object");
    const EdgeText text(none, EdgeText::End::kNone);
    const Tokens tokens = parsed(text.get(), none.size());
    trial.expects(tokens == nullptr, "null", "tokens");
  }
  trial.tries("half of an object, with the other half behind the length");
  const Tokens half = parsed(bridge.c_str(), bridge.size() / 2);
  trial.expects(half == nullptr, "null", "tokens");
  trial.tries("free() of the tokens, a thousand times");
  for (int i = 0; i < 1000; ++i) parsed(bridge.c_str(), bridge.size());
}

struct Search {
  const char* text;
  const char* member;
  const char* value;  // null: there is none
};

constexpr Search kSearches[] = {
    {kBridge, "id", "00178801020a"},
    {kBridge, "internalipaddress", "192.168.1.20"},
    {kBridge, "i", nullptr},
    {kBridge, "ids", nullptr},
    {kBridge, "00178801020a", nullptr},
    {R"({"a":"id","id":"b"})", "id", "b"},
    {R"({"a":{"id":"inner"},"id":"outer"})", "id", "outer"},
    {R"({"a":[{"id":"inner"}]})", "id", nullptr},
    {R"({"id":"with \"quotes\" and \u00e9"})", "id", R"(with \"quotes\" and \u00e9)"},
    {R"({"id":""})", "id", ""},
    {R"({ "id" : 12 , "b" : 1 })", "id", "12"},
    {R"({})", "id", nullptr},
};

void checkSearch(Trial& trial, const Search& search) {
  trial.tries(std::string("\"") + search.member + "\" of " + search.text);
  const std::string whole = search.text;
  const EdgeText text(whole, EdgeText::End::kNone);
  const Tokens tokens = parsed(text.get(), whole.size());
  trial.expects(tokens != nullptr, "tokens", "null");
  const JsonToken* token = find_json_token(tokens.get(), search.member);
  if (search.value == nullptr) return trial.expects(token == nullptr, "null", "a token");
  trial.expects(token != nullptr && token->ptr != nullptr, "a token", "null");
  const bool isInside =
      token->len >= 0 && token->ptr >= text.get() && token->ptr + token->len <= text.get() + whole.size();
  trial.expects(isInside, "a pointer into the text, and a length that ends in it", "another one");
  const std::string value(token->ptr, static_cast<std::size_t>(token->len));
  trial.expects(value == search.value, quoted(search.value), quoted(value));
}

void checkFind(Trial& trial) {
  for (const Search& search : kSearches) checkSearch(trial, search);
}

bool findsItsOwn(const std::string& value) {
  constexpr int kTurns = 1000;
  const std::string text = R"({"id":")" + value + "\"}";
  for (int turn = 0; turn < kTurns; ++turn) {
    const Tokens tokens = parsed(text.c_str(), text.size());
    const JsonToken* token = tokens != nullptr ? find_json_token(tokens.get(), "id") : nullptr;
    if (token == nullptr || std::string(token->ptr, static_cast<std::size_t>(token->len)) != value) return false;
  }
  return true;
}

void checkTokensOfThreads(Trial& trial) {
  trial.tries("objects in two threads at a time");
  bool first = false;
  std::thread other([&first] { first = findsItsOwn("first"); });
  const bool second = findsItsOwn("and the second one");
  other.join();
  trial.expects(first && second, "each thread's own answer", "another one");
}

}  // namespace

std::vector<Check> jsonChecks() {
  return {{"parse_json2", "objects, what is none, texts without a NUL, and free() of the tokens", checkParse},
          {"find_json_token", "members of the outermost object, and those that are not there", checkFind},
          {"JSON, threads", "both functions in two threads at a time", checkTokensOfThreads}};
}

}  // namespace tembra::platform_check
