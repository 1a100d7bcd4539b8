// JSON tokens for the association service, through the jsmn tokenizer.
#include <tembra/platform.h>

#include <cstdlib>
#include <cstring>
#include <vector>

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
  int depth = 0;
  bool quoted = false;
  for (size_t i = 0; i < length && text[i] != '\0'; ++i) {
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

std::vector<jsmntok_t> tokenize(const char* text, size_t length) {
  jsmn_parser parser;
  jsmn_init(&parser);
  const int count = jsmn_parse(&parser, text, length, nullptr, 0);
  std::vector<jsmntok_t> tokens(count > 0 ? static_cast<size_t>(count) : 0);
  if (tokens.empty()) return tokens;
  jsmn_init(&parser);
  if (jsmn_parse(&parser, text, length, tokens.data(), static_cast<unsigned>(count)) != count) tokens.clear();
  return tokens;
}

}  // namespace

JsonToken* parse_json2(const char* text, int length) {
  if (text == nullptr || length <= 0) return nullptr;
  const std::vector<jsmntok_t> tokens = tokenize(text, objectLength(text, static_cast<size_t>(length)));
  if (tokens.empty() || tokens[0].type != JSMN_OBJECT) return nullptr;
  auto* entries = static_cast<Entry*>(std::calloc(tokens.size(), sizeof(Entry)));
  if (entries == nullptr) return nullptr;
  Entry* entry = entries;
  for (const jsmntok_t& token : tokens) {
    const bool isName = token.type == JSMN_STRING && token.size == 1;
    *entry++ = {{text + token.start, token.end - token.start}, token.parent, isName, static_cast<int>(tokens.size())};
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
