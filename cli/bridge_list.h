// The library's list of Hue bridges, a text that holds what the database holds.
#ifndef TEMBRA_CLI_BRIDGE_LIST_H
#define TEMBRA_CLI_BRIDGE_LIST_H

#include <string>
#include <vector>

namespace tembra::cli {

struct ListedBridge {
  std::string mac;
  std::string user;
};

/// Throws Failure (kFailed) unless the text is the library's own form of these bridges, byte for byte: the library
/// puts texts of the database into it as they are, and one with quotes could pass for members and bridges.
[[nodiscard]] std::vector<ListedBridge> readBridgeList(const std::string& list);

}  // namespace tembra::cli

#endif
