// Bytes in the words of people.
#ifndef TEMBRA_RECORDING_HEXADECIMAL_H
#define TEMBRA_RECORDING_HEXADECIMAL_H

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tembra::recording {

/// "02ff00"
std::string hexadecimal(std::span<const unsigned char> bytes);

/// None: the text is no row of pairs of hexadecimal digits.
std::optional<std::vector<unsigned char>> bytesFrom(std::string_view digits);

}  // namespace tembra::recording

#endif
