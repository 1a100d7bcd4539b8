#include "sim/core/number.h"

#include <charconv>
#include <stdexcept>
#include <string>
#include <system_error>

namespace tembra::sim {

int parseNumber(std::string_view text, int smallest, int largest) {
  int number = 0;
  const char* const textEnd = text.data() + text.size();
  const auto [end, error] = std::from_chars(text.data(), textEnd, number);
  if (error != std::errc() || end != textEnd || number < smallest || number > largest) {
    throw std::invalid_argument("\"" + std::string(text) + "\" is not a number from " + std::to_string(smallest) +
                                " to " + std::to_string(largest));
  }
  return number;
}

}  // namespace tembra::sim
