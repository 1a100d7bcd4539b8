// Bridge ids and MAC texts: the same six octets, with "fffe" in the middle or with colons between them.
#include <tembra/hue.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <string_view>

namespace {

constexpr std::string_view kPositions = "0123456789ABCDEFG";

/// Which character of the input, or which character of its own, stands at each place of an output.
struct Pattern {
  static constexpr std::size_t kMost = kPositions.size();

  // A character of `kPositions` stands for the input's character at its place there, any other one for itself.
  explicit constexpr Pattern(std::string_view text) : size(text.size()) {
    for (std::size_t i = 0; i < size; ++i) {
      const std::size_t position = kPositions.find(text[i]);
      const bool isOwn = position == std::string_view::npos;
      own[i] = text[i];
      from[i] = static_cast<unsigned char>(isOwn ? kMost + i : position);
    }
  }

  std::size_t size;
  std::array<char, kMost> own{};
  std::array<unsigned char, kMost> from{};  ///< a place in the input, or behind it in `own`
};

constexpr Pattern kBridgeIdOfMac("013467fffe9ACDFG");   // drops the colons at 2, 5, 8, 11 and 14
constexpr Pattern kMacOfBridgeId("01:23:45:AB:CD:EF");  // drops the four characters at 6

// The input is not checked; what lies behind its end counts as NUL.
int rearrange(const char* input, std::size_t length, const Pattern& pattern, char* out) {
  char characters[2 * Pattern::kMost] = {};
  if (input != nullptr) std::strncpy(characters, input, length);
  std::copy(pattern.own.begin(), pattern.own.end(), characters + Pattern::kMost);
  for (std::size_t i = 0; i < pattern.size; ++i) out[i] = characters[pattern.from[i]];
  out[pattern.size] = '\0';
  return static_cast<int>(pattern.size);
}

}  // namespace

int RevertHueMac(char* mac, char* out) { return rearrange(mac, kMacOfBridgeId.size, kBridgeIdOfMac, out); }

int HueMac(char* bridgeId, char* out) { return rearrange(bridgeId, kBridgeIdOfMac.size, kMacOfBridgeId, out); }
