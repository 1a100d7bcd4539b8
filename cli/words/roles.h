// The front ends as which the program can appear.
#ifndef TEMBRA_CLI_ROLES_H
#define TEMBRA_CLI_ROLES_H

#include <string>
#include <tembra/frontend.hpp>
#include <vector>

namespace tembra::cli {

/// The values of --role.
[[nodiscard]] std::vector<std::string> roleNames();

[[nodiscard]] Role roleNumber(const std::string& name);

}  // namespace tembra::cli

#endif
