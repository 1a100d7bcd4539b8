// The kit's reading of the library's list of Hue bridges, which holds texts of the database as they are.
#include <cstdint>
#include <cstring>

#include "bridge_list.h"
#include "support/invariant.h"

namespace {

template <std::size_t N>
bool endsInside(const char (&text)[N]) {
  return strnlen(text, N) < N && std::strpbrk(text, "\"") == nullptr;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  tembra::frontend::BridgeList list;
  static_cast<void>(tembra::frontend::parseBridges({reinterpret_cast<const char*>(data), size}, list));
  fuzz::require(list.count == static_cast<int>(list.bridges.size()), "the list counts its bridges");
  for (const tembra_bridge& bridge : list.bridges) {
    fuzz::require(endsInside(bridge.mac) && endsInside(bridge.user), "a text of the list ends, and not by itself");
    fuzz::require(*bridge.address == '\0', "the list has no addresses");
  }
  return 0;
}
