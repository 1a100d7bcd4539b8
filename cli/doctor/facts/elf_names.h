// The names that a program or library defines for others, read from its file.
#ifndef TEMBRA_CLI_DOCTOR_ELF_NAMES_H
#define TEMBRA_CLI_DOCTOR_ELF_NAMES_H

#include <set>
#include <string>

namespace tembra::cli::doctor {

struct ElfNames {
  std::string fault;           ///< why the names cannot be told, "it is no ELF file"; empty: they are told
  std::set<std::string> all;   ///< without room that a program keeps for a library's object, which is the same object
  std::set<std::string> firm;  ///< of these the ones that are not weak
};

[[nodiscard]] ElfNames readElfNames(const std::string& path);

}  // namespace tembra::cli::doctor

#endif
