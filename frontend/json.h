// Writes one JSON object, member by member.
#ifndef TEMBRA_FRONTEND_JSON_H
#define TEMBRA_FRONTEND_JSON_H

#include <string>
#include <string_view>

namespace tembra::frontend {

class JsonWriter {
 public:
  JsonWriter& member(std::string_view name, std::string_view text);
  JsonWriter& member(std::string_view name, const char* text);  ///< null: null
  JsonWriter& member(std::string_view name, long long number);
  JsonWriter& member(std::string_view name, int number) { return member(name, static_cast<long long>(number)); }
  JsonWriter& member(std::string_view name, unsigned number) { return member(name, static_cast<long long>(number)); }
  JsonWriter& flag(std::string_view name, bool value);
  JsonWriter& null(std::string_view name);

  /// `open` is '{' or '['; an element of an array has an empty name.
  JsonWriter& begin(std::string_view name, char open);
  JsonWriter& end(char close);

  [[nodiscard]] const std::string& text() const { return text_; }

 private:
  void name(std::string_view name);
  void string(std::string_view text);

  std::string text_;
};

}  // namespace tembra::frontend

#endif
