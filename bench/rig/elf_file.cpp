#include "rig/elf_file.h"

#include <elf.h>
#include <link.h>

#include <cstring>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <vector>

namespace bench {
namespace {

std::vector<char> contentsOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
  if (bytes.size() < sizeof(ElfW(Ehdr)) || std::memcmp(bytes.data(), ELFMAG, SELFMAG) != 0) {
    throw std::runtime_error(path + " is no ELF file");
  }
  return bytes;
}

}  // namespace

ElfFile::ElfFile(const std::string& path) {
  const std::vector<char> bytes = contentsOf(path);
  const auto read = [&bytes](auto& record, std::size_t offset) {
    std::memcpy(&record, bytes.data() + offset, sizeof record);
  };
  ElfW(Ehdr) file{};
  read(file, 0);
  ElfW(Shdr) names{};
  read(names, file.e_shoff + std::size_t{file.e_shstrndx} * sizeof names);
  for (std::size_t i = 0; i < file.e_shnum; ++i) {
    ElfW(Shdr) section{};
    read(section, file.e_shoff + i * sizeof section);
    sizes_[bytes.data() + names.sh_offset + section.sh_name] += section.sh_size;
    if ((section.sh_flags & SHF_ALLOC) != 0 && section.sh_type != SHT_NOBITS) loaded_ += section.sh_size;
  }
}

std::size_t ElfFile::sizeOf(const std::string& section) const {
  const auto size = sizes_.find(section);
  return size == sizes_.end() ? 0 : size->second;
}

std::size_t ElfFile::codeAndData() const {
  return sizeOf(".text") + sizeOf(".rodata") + sizeOf(".data.rel.ro") + sizeOf(".data");
}

}  // namespace bench
