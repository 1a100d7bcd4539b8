// The command line's reading of the library's list of Hue bridges, which holds texts of the database as they are.
#include "cli/bridge_list.h"

#include <cstdint>

#include "cli/failure.h"
#include "support/invariant.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string list(reinterpret_cast<const char*>(data), size);
  try {
    for (const auto& bridge : tembra::cli::readBridgeList(list)) {
      const std::string both = bridge.mac + bridge.user;
      fuzz::require(both.find_first_of("\"\\") == std::string::npos, "a text of the list cannot end itself");
      fuzz::require(list.find(bridge.mac) != std::string::npos, "a bridge of the list stands in it");
    }
  } catch (const tembra::cli::Failure& refusal) {
    fuzz::require(*refusal.what() != '\0', "a refusal says why");
  }
  return 0;
}
