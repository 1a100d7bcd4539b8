// A tar file (ustar) of texts.
#ifndef TEMBRA_CLI_TAR_FILE_H
#define TEMBRA_CLI_TAR_FILE_H

#include <ctime>
#include <string>
#include <vector>

namespace tembra::cli::report {

struct Part {
  std::string name;     ///< at most 99 bytes
  std::string meaning;  ///< for the list
  std::string content;
};

/// The bytes of the file. Every part belongs to nobody and has mode 0644.
[[nodiscard]] std::string tarOf(const std::vector<Part>& parts, std::time_t now);

}  // namespace tembra::cli::report

#endif
