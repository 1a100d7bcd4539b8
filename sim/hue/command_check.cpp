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

}  // namespace

std::string bridgeIdIn(const HueCommand& command) {
  std::string id = textIn(command.bridgeId);
  std::transform(id.begin(), id.end(), id.begin(), [](unsigned char letter) {
    return static_cast<char>(letter >= 'A' && letter <= 'Z' ? letter - 'A' + 'a' : letter);
  });
  return id;
}

// A sender need not clear the bytes that its command does not use.
std::vector<std::string> mistakesIn(const HueCommand& command, HueTexts texts) {
  std::vector<std::string> mistakes;
  const std::string bridgeId = textIn(command.bridgeId);
  if (texts != HueTexts::kNone && !isBridgeId(bridgeId)) {
    mistakes.push_back("a bridge id of the wrong form: \"" + bridgeId + "\"");
  }
  if (texts == HueTexts::kBridgeAndArgument && !terminated(command.argument)) {
    mistakes.emplace_back("an argument that has no end");
  }
  return mistakes;
}

}  // namespace tembra::sim
