// Whether a front end's program has names of its own that are the library's.
#include <dlfcn.h>
#include <tembra/version.h>

#include <algorithm>
#include <iterator>

#include "cli/doctor/checks/checks.h"
#include "cli/doctor/facts/elf_names.h"
#include "cli/doctor/facts/router.h"
#include "platform/printable.h"

namespace tembra::cli::doctor {
namespace {

constexpr std::size_t kMostNames = 8;

std::string libraryFile() {
  Dl_info info{};
  void* const address = dlsym(RTLD_NEXT, "tembra_version");
  return address != nullptr && dladdr(address, &info) != 0 && info.dli_fname != nullptr ? info.dli_fname : "";
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
                 file + " defines " + printable(listed(shared, kMostNames)) + ".",
                 "Make them static in the program, or give them other names.");
}

}  // namespace tembra::cli::doctor
