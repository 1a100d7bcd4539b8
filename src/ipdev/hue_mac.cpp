// Bridge ids and MAC texts: the same six octets, with "fffe" in the middle or with colons between them.
#include <tembra/hue.h>

#include <array>
#include <cstddef>
#include <cstring>
#include <string_view>

namespace tembra {
namespace {

/// A text with six octets of two digits each.
struct Form {
  std::string_view empty;             // with "00" for each octet
  std::array<std::size_t, 6> octets;  // where each of them stands
};

constexpr Form kMac{"00:00:00:00:00:00", {0, 3, 6, 9, 12, 15}};
constexpr Form kBridgeId{"000000fffe000000", {0, 2, 4, 10, 12, 14}};

// The input is not checked. A NUL stands for each character behind its end.
int rearrange(const char* input, const Form& from, const Form& to, char* out) {
  char text[kMac.empty.size()] = {};
  if (input != nullptr) std::memcpy(text, input, strnlen(input, from.empty.size()));
  std::memcpy(out, to.empty.data(), to.empty.size());
  for (std::size_t i = 0; i < to.octets.size(); ++i) std::memcpy(out + to.octets[i], text + from.octets[i], 2);
  out[to.empty.size()] = '\0';
  return static_cast<int>(to.empty.size());
}

}  // namespace
}  // namespace tembra

using namespace tembra;

int RevertHueMac(char* mac, char* out) { return rearrange(mac, kMac, kBridgeId, out); }

int HueMac(char* bridgeId, char* out) { return rearrange(bridgeId, kBridgeId, kMac, out); }
