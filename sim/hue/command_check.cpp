#include "sim/hue/command_check.h"

#include <algorithm>
#include <cctype>
#include <string_view>

#include "sim/core/record_bytes.h"

namespace tembra::sim {
namespace {

// Three octets of a MAC address, "fffe", and the other three octets.
bool isBridgeId(std::string_view id) {
  constexpr std::size_t length = 16;
  constexpr std::size_t middle = 6;
  constexpr std::string_view filler = "fffe";
  return id.size() == length && id.substr(middle, filler.size()) == filler &&
         std::all_of(id.begin(), id.end(), [](unsigned char letter) { return std::isxdigit(letter) != 0; });
}

template <std::size_t N>
bool wellFilled(const char (&field)[N], bool used) {
  return used ? zeroBehindText(field) : zeroBehindText(field) && field[0] == '\0';
}

}  // namespace

std::vector<std::string> mistakesIn(const HueCommand& command, HueTexts texts) {
  std::vector<std::string> mistakes;
  const bool hasBridge = texts != HueTexts::kNone;
  const std::string bridgeId = textIn(command.bridgeId);
  if (hasBridge && !isBridgeId(bridgeId)) {
    mistakes.push_back("a bridge id of the wrong form: \"" + bridgeId + "\"");
  }
  if (!allZero(command.at0) || !allZero(command.at224) || !wellFilled(command.bridgeId, hasBridge) ||
      !wellFilled(command.argument, texts == HueTexts::kBridgeAndArgument)) {
    mistakes.emplace_back("bytes of a command that must be zero are not");
  }
  return mistakes;
}

}  // namespace tembra::sim
