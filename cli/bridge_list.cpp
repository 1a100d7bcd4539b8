#include "bridge_list.h"

#include <nlohmann/json.hpp>

#include "failure.h"

namespace tembra::cli {
namespace {

using nlohmann::json;

[[noreturn]] void refuse(const std::string& list) {
  throw Failure(kFailed, "the library's list of bridges is not the JSON that it should be: " + list);
}

std::string textOf(const json& bridge, const char* member) {
  if (!bridge.is_object()) return "";
  const auto found = bridge.find(member);
  return found != bridge.end() && found->is_string() ? found->get<std::string>() : "";
}

// As the library writes it: without escapes.
std::string written(const std::vector<ListedBridge>& bridges) {
  std::string list = R"({"MAClist":[)";
  for (const ListedBridge& bridge : bridges) {
    if (&bridge != bridges.data()) list += ',';
    list.append(R"({"mac":")").append(bridge.mac).append(R"(","username":")").append(bridge.user).append(R"("})");
  }
  return list + "]}";
}

}  // namespace

std::vector<ListedBridge> readBridgeList(const std::string& list) {
  const json parsed = json::parse(list, nullptr, false);
  if (!parsed.is_object() || !parsed.contains("MAClist") || !parsed["MAClist"].is_array()) refuse(list);
  std::vector<ListedBridge> bridges;
  for (const json& bridge : parsed["MAClist"]) bridges.push_back({textOf(bridge, "mac"), textOf(bridge, "username")});
  if (written(bridges) != list) refuse(list);
  return bridges;
}

}  // namespace tembra::cli
