// Whether a front end's program has names of its own that are the library's.
#include <dlfcn.h>
#include <tembra/version.h>

#include <algorithm>
#include <iterator>

#include "cli/doctor/checks.h"
#include "cli/doctor/elf_names.h"
#include "cli/doctor/router.h"
#include "platform/printable.h"

namespace tembra::cli::doctor {
namespace {

std::string libraryFile() {
  Dl_info info{};
  void* const address = dlsym(RTLD_NEXT, "tembra_version");
  return address != nullptr && dladdr(address, &info) != 0 && info.dli_fname != nullptr ? info.dli_fname : "";
}

std::string someOf(const std::vector<std::string>& names) {
  constexpr std::size_t kMost = 8;
  std::string text;
  for (std::size_t i = 0; i < std::min(names.size(), kMost); ++i) text += (i == 0 ? "" : ", ") + printable(names[i]);
  return text + (names.size() > kMost ? " and " + std::to_string(names.size() - kMost) + " more" : "");
}

}  // namespace

Verdict checkProgramNames(Router& router) {
  const std::string file = printable(router.program());
  const ElfNames library = readElfNames(libraryFile());
  const ElfNames program = readElfNames(router.program());
  if (!program.fault.empty())
    return note("The names of the program cannot be told.", file + ": " + program.fault + ".");
  if (!library.fault.empty())
    return note("The names of the library cannot be told.", libraryFile() + ": " + library.fault + ".");
  std::vector<std::string> shared;
  std::ranges::set_intersection(program.all, library.firm, std::back_inserter(shared));
  if (shared.empty()) return well("The program " + file + " has no name of the library.");
  return finding("The program has names that are the library's, so both use the same variable or function.",
                 file + " defines " + someOf(shared) + ".",
                 "Make them static in the program, or give them other names.");
}

}  // namespace tembra::cli::doctor
