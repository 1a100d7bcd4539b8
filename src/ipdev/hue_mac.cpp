// Bridge ids and MAC texts: the same six octets, with "fffe" in the middle or with colons between them.
#include <tembra/hue.h>

#include <cstddef>
#include <cstring>
#include <string_view>

namespace {

// Position i of the output is character kPositions.find(pattern[i]) of the input, or the pattern's own character. The
// input is not checked; what lies behind its end counts as NUL.
constexpr std::string_view kPositions = "0123456789ABCDEFG";
constexpr std::string_view kBridgeIdOfMac = "013467fffe9ACDFG";   // drops the colons at 2, 5, 8, 11 and 14
constexpr std::string_view kMacOfBridgeId = "01:23:45:AB:CD:EF";  // drops the four characters at 6

int rearrange(const char* input, std::size_t length, std::string_view pattern, char* out) {
  char text[kPositions.size() + 1] = {};
  if (input != nullptr) std::strncpy(text, input, length);
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    const std::size_t position = kPositions.find(pattern[i]);
    out[i] = position == std::string_view::npos ? pattern[i] : text[position];
  }
  out[pattern.size()] = '\0';
  return static_cast<int>(pattern.size());
}

}  // namespace

int RevertHueMac(char* mac, char* out) { return rearrange(mac, kMacOfBridgeId.size(), kBridgeIdOfMac, out); }

int HueMac(char* bridgeId, char* out) { return rearrange(bridgeId, kBridgeIdOfMac.size(), kMacOfBridgeId, out); }
