// Bridge ids and MAC texts: the same six octets, with "fffe" in the middle or with colons between them.
#include <tembra/hue.h>

#include <array>
#include <cstddef>
#include <cstring>
#include <string_view>

namespace {

constexpr std::string_view kPositions = "0123456789ABCDEFG";

constexpr std::size_t kDigits = 12;

/// How an output comes from an input: a character of `kPositions` stands for the input's character at its place there,
/// any other one for itself.
struct Pattern {
  struct Move {
    unsigned char from;
    unsigned char to;
  };

  explicit constexpr Pattern(std::string_view whole) : text(whole) {
    std::size_t digits = 0;
    for (std::size_t to = 0; to < text.size(); ++to) {
      const std::size_t from = kPositions.find(text[to]);
      if (from == std::string_view::npos) continue;
      moves[digits++] = {static_cast<unsigned char>(from), static_cast<unsigned char>(to)};
    }
  }

  std::string_view text;
  std::array<Move, kDigits> moves{};
};

constexpr Pattern kBridgeIdOfMac("013467fffe9ACDFG");   // drops the colons at 2, 5, 8, 11 and 14
constexpr Pattern kMacOfBridgeId("01:23:45:AB:CD:EF");  // drops the four characters at 6

// The input is not checked; what lies behind its end counts as NUL.
int rearrange(const char* input, std::size_t length, const Pattern& pattern, char* out) {
  char digits[kPositions.size()] = {};
  if (input != nullptr) std::strncpy(digits, input, length);
  std::memcpy(out, pattern.text.data(), pattern.text.size());
  for (const Pattern::Move& move : pattern.moves) out[move.to] = digits[move.from];
  out[pattern.text.size()] = '\0';
  return static_cast<int>(pattern.text.size());
}

}  // namespace

int RevertHueMac(char* mac, char* out) { return rearrange(mac, kMacOfBridgeId.text.size(), kBridgeIdOfMac, out); }

int HueMac(char* bridgeId, char* out) { return rearrange(bridgeId, kBridgeIdOfMac.text.size(), kMacOfBridgeId, out); }
