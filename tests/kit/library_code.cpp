// Where the library's code lies.
#include <link.h>
#include <tembra/association.h>

#include <cstdint>

#include "kit/faults.h"

namespace kit {
namespace {

struct Range {
  std::uintptr_t begin = 0;
  std::uintptr_t end = 0;
};

std::uintptr_t addressOf(const void* pointer) { return reinterpret_cast<std::uintptr_t>(pointer); }

// Takes the object that holds the library's entry.
int takeRange(dl_phdr_info* info, std::size_t /*size*/, void* found) {
  const std::uintptr_t entry = addressOf(reinterpret_cast<const void*>(&TembraAssociation::receiverHelper));
  for (int i = 0; i < info->dlpi_phnum; ++i) {
    const ElfW(Phdr)& header = info->dlpi_phdr[i];
    const std::uintptr_t begin = info->dlpi_addr + header.p_vaddr;
    if (header.p_type != PT_LOAD || entry < begin || entry >= begin + header.p_memsz) continue;
    *static_cast<Range*>(found) = {begin, begin + header.p_memsz};
    return 1;
  }
  return 0;
}

Range findRange() {
  Range range;
  dl_iterate_phdr(&takeRange, &range);
  return range;
}

}  // namespace

bool isInLibrary(const void* address) {
  static const Range code = findRange();
  return addressOf(address) >= code.begin && addressOf(address) < code.end;
}

}  // namespace kit
