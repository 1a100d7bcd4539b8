#include "cli/doctor/facts/elf_names.h"

#include <elf.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <type_traits>
#include <vector>

#include "platform/descriptor.h"

namespace tembra::cli::doctor {
namespace {

constexpr std::uint64_t kMostOfTable = 64U << 20U;  // of one table
constexpr std::size_t kMostSections = 1000;

/// How each kind of CPU calls the room for an object of a library.
struct CopyKind {
  int machine;
  unsigned kind;
};
constexpr CopyKind kCopyKinds[] = {{EM_386, R_386_COPY},         {EM_X86_64, R_X86_64_COPY}, {EM_ARM, R_ARM_COPY},
                                   {EM_AARCH64, R_AARCH64_COPY}, {EM_MIPS, R_MIPS_COPY},     {EM_RISCV, R_RISCV_COPY},
                                   {EM_PPC, R_PPC_COPY},         {EM_PPC64, R_PPC64_COPY}};

struct Narrow {
  using Header = Elf32_Ehdr;
  using Section = Elf32_Shdr;
  using Symbol = Elf32_Sym;
  using Relocation = Elf32_Rel;
  using LongRelocation = Elf32_Rela;
  static std::uint64_t symbolOf(std::uint64_t info) { return info >> 8U; }
  static std::uint64_t kindOf(std::uint64_t info) { return info & 0xFFU; }
};

struct Wide {
  using Header = Elf64_Ehdr;
  using Section = Elf64_Shdr;
  using Symbol = Elf64_Sym;
  using Relocation = Elf64_Rel;
  using LongRelocation = Elf64_Rela;
  static std::uint64_t symbolOf(std::uint64_t info) { return info >> 32U; }
  static std::uint64_t kindOf(std::uint64_t info) { return info & 0xFFFFFFFFU; }
};

/// Nothing in the file is believed: what reaches beyond its end, or is absurdly long, throws.
class ElfFile {
 public:
  /// Opening a pipe would wait for its other end.
  explicit ElfFile(const std::string& path) : file_(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {
    struct stat status = {};
    if (!file_.valid() || fstat(file_.get(), &status) != 0) throw std::runtime_error("it cannot be read");
    if (!S_ISREG(status.st_mode)) throw std::runtime_error("it is no regular file");
    size_ = static_cast<std::uint64_t>(status.st_size);
  }

  template <typename Item>
  std::vector<Item> table(std::uint64_t offset, std::uint64_t bytes) {
    static_assert(std::is_trivial_v<Item>);
    if (bytes > kMostOfTable) throw std::runtime_error("one of its tables is too long");
    if (offset > size_ || bytes > size_ - offset) throw std::runtime_error("it is cut off");
    std::vector<Item> items(static_cast<std::size_t>(bytes / sizeof(Item)));
    const std::size_t length = items.size() * sizeof(Item);
    if (pread(file_.get(), items.data(), length, static_cast<off_t>(offset)) != static_cast<ssize_t>(length)) {
      throw std::runtime_error("it cannot be read");
    }
    return items;
  }

 private:
  const Descriptor file_;
  std::uint64_t size_ = 0;
};

template <typename Kind>
class NamesReader {
 public:
  explicit NamesReader(ElfFile& file) : file_(file), header_(file.table<Header>(0, sizeof(Header)).front()) {
    if (header_.e_shentsize != sizeof(Section) || header_.e_shnum == 0 || header_.e_shnum > kMostSections) {
      throw std::runtime_error("it has no table of sections");
    }
    sections_ = file.table<Section>(header_.e_shoff, std::uint64_t{header_.e_shnum} * sizeof(Section));
  }

  ElfNames read() {
    ElfNames names;
    for (std::size_t i = 0; i < sections_.size(); ++i) {
      if (sections_[i].sh_type == SHT_DYNSYM) readSymbols(i, names);
    }
    return names;
  }

 private:
  using Header = typename Kind::Header;
  using Section = typename Kind::Section;
  using Symbol = typename Kind::Symbol;

  void readSymbols(std::size_t section, ElfNames& names) {
    const Section& table = sections_[section];
    const std::set<std::uint64_t> copies = copiesIn(section);
    const std::vector<Symbol> symbols = file_.template table<Symbol>(table.sh_offset, table.sh_size);
    std::vector<char> texts = file_.template table<char>(at(table.sh_link).sh_offset, at(table.sh_link).sh_size);
    texts.push_back('\0');
    for (std::size_t i = 0; i < symbols.size(); ++i) {
      const Symbol& symbol = symbols[i];
      const unsigned binding = symbol.st_info >> 4U;
      const bool isDefined = symbol.st_shndx != SHN_UNDEF && symbol.st_shndx != SHN_ABS && binding != STB_LOCAL;
      if (!isDefined || copies.contains(i)) continue;
      if (symbol.st_name >= texts.size()) throw std::runtime_error("a name lies behind its end");
      names.all.insert(texts.data() + symbol.st_name);
      if (binding != STB_WEAK) names.firm.insert(texts.data() + symbol.st_name);
    }
  }

  // The numbers of the symbols that are room for a library's object.
  std::set<std::uint64_t> copiesIn(std::size_t symbols) {
    std::set<std::uint64_t> copies;
    for (const Section& section : sections_) {
      if (section.sh_link != symbols) continue;
      if (section.sh_type == SHT_REL) addCopies<typename Kind::Relocation>(section, copies);
      if (section.sh_type == SHT_RELA) addCopies<typename Kind::LongRelocation>(section, copies);
    }
    return copies;
  }

  template <typename Relocation>
  void addCopies(const Section& section, std::set<std::uint64_t>& copies) {
    for (const Relocation& each : file_.template table<Relocation>(section.sh_offset, section.sh_size)) {
      if (isCopy(Kind::kindOf(each.r_info))) copies.insert(Kind::symbolOf(each.r_info));
    }
  }

  [[nodiscard]] bool isCopy(std::uint64_t kind) const {
    for (const CopyKind& row : kCopyKinds) {
      if (row.machine == header_.e_machine) return row.kind == kind;
    }
    return false;
  }

  [[nodiscard]] const Section& at(std::size_t number) const {
    if (number >= sections_.size()) throw std::runtime_error("it has no table of names");
    return sections_[number];
  }

  ElfFile& file_;
  const Header header_;
  std::vector<Section> sections_;
};

ElfNames readNames(const std::string& path) {
  ElfFile file(path);
  const auto mark = file.table<unsigned char>(0, EI_NIDENT);
  if (std::memcmp(mark.data(), ELFMAG, SELFMAG) != 0) throw std::runtime_error("it is no ELF file");
  if (mark[EI_DATA] != ELFDATA2LSB) throw std::runtime_error("it is for a big-endian CPU");
  return mark[EI_CLASS] == ELFCLASS64 ? NamesReader<Wide>(file).read() : NamesReader<Narrow>(file).read();
}

}  // namespace

ElfNames readElfNames(const std::string& path) {
  try {
    return readNames(path);
  } catch (const std::runtime_error& fault) {
    return {fault.what(), {}, {}};
  } catch (const std::bad_alloc&) {
    return {"its tables need more memory than there is", {}, {}};
  }
}

}  // namespace tembra::cli::doctor
