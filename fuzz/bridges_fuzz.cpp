// The kit's reading of the library's list of Hue bridges, which holds texts of the database as they are.
#include <cstdint>
#include <cstring>
#include <iterator>

#include "bridge_list.h"
#include "support/invariant.h"

namespace {

template <std::size_t N>
bool endsInside(const char (&text)[N]) {
  return strnlen(text, N) < N && std::strpbrk(text, "\"") == nullptr;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  tembra_bridges list{};
  static_cast<void>(tembra::frontend::parseBridges({reinterpret_cast<const char*>(data), size}, list));
  fuzz::require(list.count >= 0 && list.count <= static_cast<int>(std::size(list.bridges)), "the list has room");
  for (int i = 0; i < list.count; ++i) {
    const tembra_bridge& bridge = list.bridges[i];
    fuzz::require(endsInside(bridge.mac) && endsInside(bridge.user), "a text of the list ends, and not by itself");
    fuzz::require(*bridge.address == '\0', "the list has no addresses");
  }
  return 0;
}
