// Writes one JSON object, member by member.
#ifndef TEMBRA_FRONTEND_JSON_H
#define TEMBRA_FRONTEND_JSON_H

#include <string>
#include <string_view>

namespace tembra::frontend {

class JsonWriter {
 public:
  JsonWriter& member(std::string_view key, std::string_view text);
  JsonWriter& member(std::string_view key, const char* text);  ///< null: null
  JsonWriter& member(std::string_view key, long long number);
  JsonWriter& member(std::string_view key, int number) { return member(key, static_cast<long long>(number)); }
  JsonWriter& member(std::string_view key, unsigned number) { return member(key, static_cast<long long>(number)); }
  JsonWriter& flag(std::string_view key, bool value);
  JsonWriter& null(std::string_view key);

  /// `open` is '{' or '['; an element of an array has an empty key.
  JsonWriter& begin(std::string_view key, char open);
  JsonWriter& end(char close);

  [[nodiscard]] const std::string& text() const { return text_; }

 private:
  void name(std::string_view name);
  void string(std::string_view text);

  std::string text_;
};

}  // namespace tembra::frontend

#endif
