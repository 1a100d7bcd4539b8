// Texts and files of bytes, taken apart and put together.
#ifndef TEMBRA_TESTS_KIT_TEXT_H
#define TEMBRA_TESTS_KIT_TEXT_H

#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

namespace kit {

using Bytes = std::vector<unsigned char>;

inline std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

/// All of a file; empty when there is none.
inline std::string readFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

inline void writeFile(const std::string& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

}  // namespace kit

#endif
