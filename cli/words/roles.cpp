#include "cli/words/roles.h"

#include <algorithm>
#include <iterator>

namespace tembra::cli {
namespace {

// In the order of Role.
constexpr const char* kRoles[] = {"web", "lcd", "cloud", "mesh", "free1", "free2"};
static_assert(TEMBRA_ROLE_WEB_SERVER == 1 && TEMBRA_ROLE_FREE_2 == std::size(kRoles));

}  // namespace

std::vector<std::string> roleNames() { return {std::begin(kRoles), std::end(kRoles)}; }

// The command line lets no other name through.
Role roleNumber(const std::string& name) {
  return static_cast<Role>(TEMBRA_ROLE_WEB_SERVER + (std::ranges::find(kRoles, name) - std::begin(kRoles)));
}

}  // namespace tembra::cli
