#include "cli/words/roles.h"

#include <tembra/vocabulary.h>

#include <algorithm>
#include <iterator>

namespace tembra::cli {
namespace {

// In the order of ClientRole.
constexpr const char* kRoles[] = {"web", "lcd", "cloud", "mesh", "free1", "free2"};
static_assert(ROLE_WEB_SERVER == 1 && ROLE_FREE_USER_2 == std::size(kRoles));

}  // namespace

std::vector<std::string> roleNames() { return {std::begin(kRoles), std::end(kRoles)}; }

// The command line lets no other name through.
int roleNumber(const std::string& name) {
  return ROLE_WEB_SERVER + static_cast<int>(std::ranges::find(kRoles, name) - std::begin(kRoles));
}

}  // namespace tembra::cli
