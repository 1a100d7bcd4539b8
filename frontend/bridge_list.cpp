#include "bridge_list.h"

#include <string>

#include "texts.h"

namespace tembra::frontend {
namespace {

bool skip(std::string_view& text, std::string_view expected) {
  if (text.substr(0, expected.size()) != expected) return false;
  text.remove_prefix(expected.size());
  return true;
}

// A text of the library's list, which has no escapes, and what must follow it.
bool takeText(std::string_view& text, std::string& out, std::string_view behind) {
  const std::size_t end = text.find('"');
  if (end == std::string_view::npos) return false;
  out = cleaned(text.substr(0, end));
  text.remove_prefix(end);
  return skip(text, behind);
}

}  // namespace

void BridgeList::add(std::string_view mac, std::string_view address, std::string_view user) {
  auto bridge = sized<tembra_bridge>();
  putText(bridge.mac, mac);
  putText(bridge.address, address);
  putText(bridge.user, user);
  bridges.push_back(bridge);
  count = static_cast<int>(bridges.size());
}

bool parseBridges(std::string_view text, BridgeList& list) {
  if (!skip(text, R"({"MAClist":[)")) return false;
  while (skip(text, R"({"mac":")")) {
    std::string mac;
    std::string user;
    if (!takeText(text, mac, R"(","username":")") || !takeText(text, user, "\"}")) return false;
    list.add(mac, {}, user);
    skip(text, ",");
  }
  return text == "]}";
}

}  // namespace tembra::frontend
