// JSON that people write: what is wrong with a text, and where.
#ifndef TEMBRA_WORDS_JSON_TEXT_H
#define TEMBRA_WORDS_JSON_TEXT_H

#include <nlohmann/json_fwd.hpp>
#include <stdexcept>
#include <string>

namespace tembra::words {

/// Says after the name of a text what is wrong with it: "is no JSON text: see line 3, column 7".
class JsonFault : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The value that the text stands for. Throws JsonFault, also for an object that has a member twice: one of the two
/// would be lost.
[[nodiscard]] nlohmann::json parseJson(const std::string& text);

}  // namespace tembra::words

#endif
