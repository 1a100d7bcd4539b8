#include "library_imports.h"

#include <dlfcn.h>
#include <elf.h>
#include <link.h>
#include <tembra/association.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <iterator>
#include <vector>

namespace {

using Bytes = std::vector<char>;

Bytes readLibrary() {
  Dl_info info{};
  dladdr(reinterpret_cast<void*>(&TembraAssociation::receiverHelper), &info);
  std::ifstream file(info.dli_fname, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

template <typename Entry>
Entry entryAt(const Bytes& file, std::size_t offset) {
  Entry entry{};
  if (offset + sizeof entry <= file.size()) std::memcpy(&entry, file.data() + offset, sizeof entry);
  return entry;
}

ElfW(Shdr) sectionAt(const Bytes& file, std::size_t index) {
  const auto header = entryAt<ElfW(Ehdr)>(file, 0);
  return entryAt<ElfW(Shdr)>(file, header.e_shoff + index * header.e_shentsize);
}

constexpr const char* kSanitizers[] = {"__asan", "__tsan", "__ubsan", "__sanitizer", "__lsan", "__interceptor"};

bool isSanitizers(const std::string& name) {
  return std::any_of(std::begin(kSanitizers), std::end(kSanitizers),
                     [&](const char* beginning) { return name.rfind(beginning, 0) == 0; });
}

void takeUndefined(const Bytes& file, const ElfW(Shdr) & table, std::set<std::string>& names) {
  const ElfW(Shdr) texts = sectionAt(file, table.sh_link);
  for (std::size_t at = 0; at < table.sh_size; at += sizeof(ElfW(Sym))) {
    const auto symbol = entryAt<ElfW(Sym)>(file, table.sh_offset + at);
    if (symbol.st_shndx != SHN_UNDEF || symbol.st_name == 0) continue;
    const std::string name = file.data() + texts.sh_offset + symbol.st_name;
    if (!isSanitizers(name)) names.insert(name);
  }
}

}  // namespace

std::set<std::string> libraryImports() {
  const Bytes file = readLibrary();
  const auto header = entryAt<ElfW(Ehdr)>(file, 0);
  std::set<std::string> names;
  for (std::size_t i = 0; i < header.e_shnum; ++i) {
    const ElfW(Shdr) section = sectionAt(file, i);
    if (section.sh_type == SHT_DYNSYM) takeUndefined(file, section, names);
  }
  return names;
}
