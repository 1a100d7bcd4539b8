// A file for a reader that takes no other texts.
#ifndef TEMBRA_FUZZ_SUPPORT_TEXT_FILE_H
#define TEMBRA_FUZZ_SUPPORT_TEXT_FILE_H

#include <cstddef>
#include <cstdint>
#include <fstream>

#include "support/private_folder.h"

namespace fuzz {

/// While it lives, the process is in its private folder, which holds the file.
class TextFile {
 public:
  TextFile(const char* name, const std::uint8_t* data, std::size_t size) {
    PrivateFolder::enter();
    std::ofstream(name, std::ios::binary)
        .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
  }
  ~TextFile() { PrivateFolder::leave(); }
  TextFile(const TextFile&) = delete;
  TextFile& operator=(const TextFile&) = delete;
};

}  // namespace fuzz

#endif
