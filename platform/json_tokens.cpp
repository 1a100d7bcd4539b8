// JSON tokens for the association service, through the jsmn tokenizer.
#include <tembra/platform.h>

#include <cstdlib>
#include <cstring>
#include <memory>

#define JSMN_STATIC
#define JSMN_STRICT
#define JSMN_PARENT_LINKS
#include <jsmn.h>

namespace {

// One array entry: a JsonToken as the caller sees it, and where it stands.
struct Entry {
  JsonToken text;
  int parent;   // entry of the enclosing object, array or member name
  bool isName;  // of a member
  int count;    // of entries, in entry 0
};

Entry* entriesOf(JsonToken* tokens) { return reinterpret_cast<Entry*>(tokens); }

// Length of the object that a text begins with, 0 when there is no whole one.
size_t objectLength(const char* text, size_t length) {
  size_t begin = 0;
  while (begin < length && std::strchr(" \t\r\n", text[begin]) != nullptr && text[begin] != '\0') ++begin;
  if (begin == length || text[begin] != '{') return 0;
  int depth = 0;
  bool quoted = false;
  for (size_t i = begin; i < length && text[i] != '\0'; ++i) {
    const char c = text[i];
    if (quoted && c == '\\') {
      ++i;
    } else if (c == '"') {
      quoted = !quoted;
    } else if (!quoted && (c == '{' || c == '[')) {
      ++depth;
    } else if (!quoted && (c == '}' || c == ']') && --depth == 0) {
      return i + 1;
    }
  }
  return 0;
}

using TokenArray = std::unique_ptr<jsmntok_t, decltype(&std::free)>;

// The tokens of a text and their number, which is 0 when it is no JSON or memory is short.
TokenArray tokenize(const char* text, size_t length, size_t& count) {
  jsmn_parser parser;
  jsmn_init(&parser);
  const int needed = jsmn_parse(&parser, text, length, nullptr, 0);
  TokenArray tokens(nullptr, &std::free);
  count = 0;
  if (needed < 1) return tokens;
  tokens.reset(static_cast<jsmntok_t*>(std::calloc(static_cast<size_t>(needed), sizeof(jsmntok_t))));
  if (tokens == nullptr) return tokens;
  jsmn_init(&parser);
  if (jsmn_parse(&parser, text, length, tokens.get(), static_cast<unsigned>(needed)) == needed) {
    count = static_cast<size_t>(needed);
  }
  return tokens;
}

}  // namespace

JsonToken* parse_json2(const char* text, int length) {
  if (text == nullptr || length <= 0) return nullptr;
  size_t count = 0;
  const TokenArray tokens = tokenize(text, objectLength(text, static_cast<size_t>(length)), count);
  if (count == 0 || tokens->type != JSMN_OBJECT) return nullptr;
  auto* entries = static_cast<Entry*>(std::calloc(count, sizeof(Entry)));
  if (entries == nullptr) return nullptr;
  for (size_t i = 0; i < count; ++i) {
    const jsmntok_t& token = tokens.get()[i];
    const bool isName = token.type == JSMN_STRING && token.size == 1;
    entries[i] = {{text + token.start, token.end - token.start}, token.parent, isName, static_cast<int>(count)};
  }
  return &entries->text;
}

JsonToken* find_json_token(JsonToken* tokens, const char* path) {
  if (tokens == nullptr || path == nullptr) return nullptr;
  Entry* entries = entriesOf(tokens);
  const size_t length = std::strlen(path);
  for (int i = 1; i + 1 < entries[0].count; ++i) {
    const Entry& entry = entries[i];
    const bool named = entry.isName && entry.parent == 0 && static_cast<size_t>(entry.text.len) == length &&
                       std::memcmp(entry.text.ptr, path, length) == 0;
    if (named) return &entries[i + 1].text;
  }
  return nullptr;
}
