// A ZigBee device: the reasons are the rows of the library's rules that apply, cluster by cluster. How the device
// stands when a cluster is visited is what the library makes of the clusters before it.
#include <tembra/rules.h>

#include <iterator>

#include "classification.h"
#include "frontend/zigbee_rule_texts.h"
#include "log_capture.h"
#include "texts.h"

namespace tembra::cli {
namespace {

using frontend::entriesText;
using frontend::hex4;
using frontend::outcomeText;
using frontend::testsText;

constexpr std::size_t kMostClusters = std::size(ZbDeviceInfo{}.clusters);

int clusterAt(const ZbDeviceInfo& device, std::size_t position) {
  return position < kMostClusters ? device.clusters[position].cluster : static_cast<int>(ZB_END);
}

// Whether classification survives the first `count` clusters: a decision may end it.
bool survives(TembraAssociation& service, const ZbDeviceInfo& device, std::size_t count) {
  service.zbDevice = device;
  if (count < kMostClusters) service.zbDevice.clusters[count].cluster = ZB_END;
  const LogCapture quiet;
  return service.validate_DeviceType() == 0;
}

// The device after its first `count` clusters, not yet made generic at the end.
ZbDeviceInfo afterClusters(TembraAssociation& service, const ZbDeviceInfo& device, std::size_t count) {
  if (count == 0) return device;
  survives(service, device, count);
  ZbDeviceInfo state = service.zbDevice;
  const bool madeGeneric = fieldText(service.devName).rfind("GenericDevice", 0) == 0;
  if (madeGeneric) state.devType = DEVTYPE_UNKNOWN;
  return state;
}

std::string zoneReason(const ZbDeviceInfo& state, int next) {
  if (next == ZB_IAS_CAMERA) return "directly followed by 0x0503: a camera, entries " + entriesText(zbCameraEntries);
  if (next == ZB_IAS_ATTACHED) return "directly followed by 0x0504: ignored";
  if (state.devType == DEVTYPE_OCCUPANCY_SENSOR) return "already an occupancy sensor: ignored";
  const std::string zone = zbFindZoneName(state.zoneType, state);
  const std::string displayed = zbFindDisplayName(zone.c_str(), state);
  const DevType type = StrToDevType(zone.c_str());
  return "zone type " + hex4(state.zoneType) + " is " + zone + " (type " + std::to_string(type) + "), named \"" +
         displayed + "\", entries " + entriesText(zbFindZoneEntries(type, state).entries);
}

std::string ruleReason(const ZbClusterRule& rule, const ZbDeviceInfo& state) {
  const std::string entries = "entries " + entriesText(rule.entries);
  const ZbDecision* decision = zbFindDecision(rule.cluster, state);
  if (decision == nullptr) return entries + "; decides nothing";
  return entries + "; " + testsText(decision->tests[0], decision->tests[1]) + ": " + outcomeText(*decision);
}

std::string clusterReason(TembraAssociation& service, const ZbDeviceInfo& device, std::size_t position) {
  const int cluster = clusterAt(device, position);
  const std::string where = hex4(cluster) + " on endpoint " + std::to_string(device.clusters[position].endpoint) + ": ";
  const ZbClusterRule* rule = zbFindClusterRule(cluster);
  if (rule == nullptr) return where + "no rule, ignored";
  const ZbDeviceInfo state = afterClusters(service, device, position);
  const bool zone = cluster == ZB_IAS_ZONE;
  return where + rule->title + ", " +
         (zone ? zoneReason(state, clusterAt(device, position + 1)) : ruleReason(*rule, state));
}

std::vector<IndexSlot> slotsOf(const ZbDeviceInfo& device) {
  std::vector<IndexSlot> slots;
  for (int i = 0; i < device.indexCount && i < static_cast<int>(std::size(device.indexes)); ++i) {
    slots.push_back({i + 1, device.indexes[i].type, device.indexes[i].endpoint});
  }
  return slots;
}

}  // namespace

Classification classify(TembraAssociation& service, const ZbDeviceInfo& device) {
  Classification result;
  result.radio = "ZigBee";
  for (std::size_t i = 0; clusterAt(device, i) != ZB_END; ++i) {
    result.reasons.push_back(clusterReason(service, device, i));
    if (!survives(service, device, i + 1)) break;
  }
  LogCapture log;
  service.zbDevice = device;
  result.classified = service.zb_createAnyDevice() == 0;
  for (const std::string& line : log.take()) result.reasons.push_back("log: " + line);
  if (!result.classified) return result;
  result.type = static_cast<DevType>(service.zbDevice.devType);
  result.name = fieldText(service.devName);
  result.slots = slotsOf(service.zbDevice);
  result.subTypes = subTypesOf(service, service.classifiedType);
  return result;
}

}  // namespace tembra::cli
