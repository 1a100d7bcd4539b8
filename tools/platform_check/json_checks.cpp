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

constexpr const char* kBridge = R"({"id":"001788fffe01020a","internalipaddress":"192.168.1.20"})";

Tokens parsed(const char* text, std::size_t length) {
  return {parse_json2(text, static_cast<int>(length)), &std::free};
}

bool isInside(const JsonToken& token, const EdgeText& text) {
  return token.len >= 0 && token.ptr >= text.get() && token.ptr + token.len <= text.get() + text.size();
}

// What the service looks up, and copies.
void findBoth(Trial& trial, const Tokens& tokens, const EdgeText& text) {
  for (const char* const member : {"id", "internalipaddress"}) {
    const JsonToken* const token = find_json_token(tokens.get(), member);
    const bool isWell = token == nullptr || token->ptr == nullptr || isInside(*token, text);
    trial.expects(isWell, quoted(member) + " of it as null, or as a place in the text", "another place");
  }
}

// Tokens do no harm as long as nothing is found behind the text.
void checkNoObject(Trial& trial) {
  for (const std::string none : {"", "[1,2]", "word", "12", R"({"id":"a)", R"({"id")", "{",
                                 R"({"id":"001788fffe01020a","internalipaddress":"192.)"}) {
    trial.tries("the text " + quoted(none) + ", which has no whole object");
    const EdgeText text(none, EdgeText::End::kNone);
    const Tokens tokens = parsed(text.get(), none.size());
    if (tokens != nullptr) findBoth(trial, tokens, text);
    trial.prefers(tokens == nullptr, "null", "tokens");
  }
}

// A bridge's entry has nothing behind its object, and null is an answer that the service takes.
void checkObjectWithMore(Trial& trial) {
  for (const char* const behind : {" and more", R"(}{]")"}) {
    trial.tries("an object with " + quoted(behind) + " behind it");
    const EdgeText text(kBridge + std::string(behind), EdgeText::End::kNone);
    const Tokens tokens = parsed(text.get(), text.size());
    if (tokens != nullptr) findBoth(trial, tokens, text);
    trial.prefers(tokens != nullptr, "tokens", "null");
  }
}

void checkParse(Trial& trial) {
  trial.tries("an object, and no NUL behind it");
  const EdgeText text(kBridge, EdgeText::End::kNone);
  const Tokens tokens = parsed(text.get(), text.size());
  trial.expects(tokens != nullptr, "tokens", "null");
  checkNoObject(trial);
  checkObjectWithMore(trial);
  trial.tries("free() of the tokens, a thousand times");
  for (int i = 0; i < 1000; ++i) parsed(text.get(), text.size());
}

struct Search {
  const char* text;
  const char* member;
  const char* value;  // null: there is none
};

// The service asks for these two members only. The objects have others, too.
constexpr Search kSearches[] = {
    {kBridge, "id", "001788fffe01020a"},
    {kBridge, "internalipaddress", "192.168.1.20"},
    {R"({"i":"a"})", "id", nullptr},
    {R"({"ids":"a","id":"b"})", "id", "b"},
    {R"({"a":"id"})", "id", nullptr},
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
  const EdgeText text(search.text, EdgeText::End::kNone);
  const Tokens tokens = parsed(text.get(), text.size());
  trial.expects(tokens != nullptr, "tokens", "null");
  const JsonToken* const token = find_json_token(tokens.get(), search.member);
  const bool isFound = token != nullptr && token->ptr != nullptr;
  if (search.value == nullptr) return trial.expects(!isFound, "null", "a token");
  trial.expects(isFound, "a token", "null");
  trial.expects(isInside(*token, text), "a pointer into the text, and a length that ends in it", "another one");
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
