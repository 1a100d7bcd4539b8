// Sizes of the sections of a 64-bit ELF file.
#ifndef TEMBRA_BENCH_RIG_ELF_FILE_H
#define TEMBRA_BENCH_RIG_ELF_FILE_H

#include <cstddef>
#include <map>
#include <string>

namespace bench {

class ElfFile {
 public:
  /// Throws one sentence when the file is none.
  explicit ElfFile(const std::string& path);

  /// Bytes of a section, 0 when there is none.
  [[nodiscard]] std::size_t sizeOf(const std::string& section) const;

  /// Code, constants and variables: what the library itself is.
  [[nodiscard]] std::size_t codeAndData() const;

  /// Everything that is loaded: also names, relocations and unwind tables, which the loader and exceptions need.
  [[nodiscard]] std::size_t loaded() const { return loaded_; }

  /// Functions that run when the file is loaded.
  [[nodiscard]] std::size_t initialisers() const { return sizeOf(".init_array") / sizeof(void*); }

 private:
  std::map<std::string, std::size_t> sizes_;
  std::size_t loaded_ = 0;
};

}  // namespace bench

#endif
