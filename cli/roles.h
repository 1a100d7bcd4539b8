// The front ends as which the program can appear.
#ifndef TEMBRA_CLI_ROLES_H
#define TEMBRA_CLI_ROLES_H

#include <string>
#include <vector>

class TembraAssociation;

namespace tembra::cli {

/// The values of --role.
[[nodiscard]] std::vector<std::string> roleNames();

/// In ClientRole numbering.
[[nodiscard]] int roleNumber(const std::string& name);

/// The service object in this role, not yet open: for what the front-end kit has no operation.
[[nodiscard]] TembraAssociation& serviceAs(const std::string& role);

}  // namespace tembra::cli

#endif
