#include "daemon_check/record_faults.h"

#include <tembra/rules.h>

#include <algorithm>
#include <iterator>
#include <nlohmann/json.hpp>
#include <span>

#include "sim/core/record_bytes.h"

namespace tembra::daemon_check {
namespace {

// The library is sure to find this many bridges only.
constexpr int kMostBridges = 25;

// As far as the rules of clusters decide. A rule that stops leaves the add without an event.
bool isStopped(ZbDeviceInfo device) {
  device.devType = DEVTYPE_UNKNOWN;
  for (const ZbClusterEntry& entry : device.clusters) {
    if (entry.cluster == ZB_END) break;
    const ZbDecision* const decision = zbFindDecision(entry.cluster, device);
    if (decision == nullptr) continue;
    if (decision->effect == ZB_STOP) return true;
    if (decision->type != ZB_KEEP_TYPE) device.devType = static_cast<unsigned char>(decision->type);
  }
  return false;
}

// The members that the library reads; null where the text is no JSON object with both.
std::string bridgeFault(const HueAnswerEntry& entry) {
  if (!sim::terminated(entry.json)) return "has no end";
  const auto object = nlohmann::json::parse(sim::textIn(entry.json), nullptr, false);
  if (!object.is_object()) return "is no JSON object";
  for (const char* member : {"id", "internalipaddress"}) {
    if (!object.contains(member) || !object[member].is_string()) return std::string("has no text \"") + member + "\"";
  }
  return object["id"].get<std::string>().size() == 16 ? "" : "has an id that is not 16 characters long";
}

}  // namespace

Faults faultsIn(const ZwNodeInfo& node) {
  Faults faults;
  const auto* const end = std::find(std::begin(node.commandClasses), std::end(node.commandClasses), 0xFF);
  if (end == std::end(node.commandClasses)) faults.emplace_back("the command classes have no end (0xFF)");
  const auto isEnd = [](const ZwValueTriple& triple) { return triple.commandClass == 0; };
  if (std::none_of(std::begin(node.values), std::end(node.values), isEnd)) {
    faults.emplace_back("the value triples have no end (command class 0)");
  }
  if (node.basicClass == 0) faults.emplace_back("the basic class is 0: no device is added");
  const std::vector<unsigned char> bytes = sim::bytesOf(node);
  if (!sim::allZero(std::span(bytes).subspan(offsetof(ZwNodeInfo, deviceKind)))) {
    faults.emplace_back("bytes that the library fills in are not zero");
  }
  return faults;
}

Faults faultsIn(const ZbDeviceInfo& device) {
  Faults faults;
  const auto isEnd = [](const ZbClusterEntry& entry) { return entry.cluster == ZB_END; };
  if (std::none_of(std::begin(device.clusters), std::end(device.clusters), isEnd)) {
    faults.emplace_back("the clusters have no end (0xFFFF)");
  }
  if (isEnd(device.clusters[0])) faults.emplace_back("there is no cluster: the device becomes a generic one");
  if (isStopped(device)) faults.emplace_back("the AC words of a plug that measures are zero: no device is added");
  if (device.devType != 0 || device.indexCount != 0 || device.name[0] != 0 || device.location[0] != 0) {
    faults.emplace_back("bytes that the library fills in are not zero");
  }
  return faults;
}

Faults faultsIn(const HueAnswer& answer) {
  Faults faults;
  if (answer.count < 0 || answer.count > kMostBridges) {
    faults.push_back("a count of " + std::to_string(answer.count) + " bridges, and the library takes " +
                     std::to_string(kMostBridges));
  }
  for (int i = 0; i < std::min(answer.count, kMostBridges); ++i) {
    const std::string fault = bridgeFault(answer.entries[i]);
    if (!fault.empty()) faults.push_back("bridge " + std::to_string(i + 1) + " " + fault);
  }
  return faults;
}

std::string firstBridgeId(const HueAnswer& answer) {
  return nlohmann::json::parse(sim::textIn(answer.entries[0].json))["id"].get<std::string>();
}

}  // namespace tembra::daemon_check
