// Reads some members of a JSON object, and makes sure that the rest is one.
#ifndef TEMBRA_FRONTEND_WATCH_JSON_SCAN_H
#define TEMBRA_FRONTEND_WATCH_JSON_SCAN_H

#include <initializer_list>
#include <string>
#include <string_view>

namespace tembra::frontend {

/// A member to be read: its place ("/holder/pid"), and where its value goes. Members of another type are passed over.
struct Wanted {
  Wanted(std::string_view place, long long* number) : place(place), number(number) {}
  Wanted(std::string_view place, std::string* text) : place(place), text(text) {}

  std::string_view place;
  long long* number = nullptr;
  std::string* text = nullptr;
};

/// @return false: the text is no JSON object, or nested more than 16 deep
[[nodiscard]] bool scanJson(std::string_view json, std::initializer_list<Wanted> wanted);

}  // namespace tembra::frontend

#endif
