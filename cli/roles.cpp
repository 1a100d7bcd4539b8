#include "roles.h"

#include <tembra/association.h>

#include <algorithm>

namespace tembra::cli {
namespace {

struct Role {
  const char* name;
  ClientRole number;
  TembraAssociation* (*initialise)();
};

constexpr Role kRoles[] = {
    {"web", ROLE_WEB_SERVER, TembraAssociation::webServerAssocInit},
    {"lcd", ROLE_LCD, TembraAssociation::LCDAssocInit},
    {"cloud", ROLE_CLOUD_APPS, TembraAssociation::cloudappsAssocInit},
    {"mesh", ROLE_MESH_SERVER, TembraAssociation::meshServerAssocInit},
    {"free1", ROLE_FREE_USER_1, TembraAssociation::FreeUsr1AssocInit},
    {"free2", ROLE_FREE_USER_2, TembraAssociation::FreeUsr2AssocInit},
};

// The command line lets no other name through.
const Role& roleOf(const std::string& name) {
  const auto* const role = std::ranges::find_if(kRoles, [&name](const Role& each) { return name == each.name; });
  return role == std::end(kRoles) ? kRoles[1] : *role;
}

}  // namespace

std::vector<std::string> roleNames() {
  std::vector<std::string> names;
  for (const Role& role : kRoles) names.emplace_back(role.name);
  return names;
}

int roleNumber(const std::string& name) { return roleOf(name).number; }

TembraAssociation& serviceAs(const std::string& role) { return *roleOf(role).initialise(); }

}  // namespace tembra::cli
