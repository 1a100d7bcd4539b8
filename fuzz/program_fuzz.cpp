// A program or library of somebody else's, whose names `tembra-assoc doctor` reads.
#include <algorithm>
#include <cstdint>

#include "cli/doctor/facts/elf_names.h"
#include "support/invariant.h"
#include "support/text_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const fuzz::TextFile file("program", data, size);
  const tembra::cli::doctor::ElfNames names = tembra::cli::doctor::readElfNames("program");
  fuzz::require(names.fault.empty() || names.all.empty(), "a file is read or refused");
  fuzz::require(std::ranges::includes(names.all, names.firm), "what is firm is one of the names");
  return 0;
}
