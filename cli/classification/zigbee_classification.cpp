// A ZigBee device: the reasons are the rows of the library's rules that apply, cluster by cluster. To see what a
// cluster adds, the library classifies the device with the clusters before it, and once more with this cluster.
#include <tembra/rules.h>

#include <algorithm>
#include <iterator>

#include "cli/classification/classification.h"
#include "cli/classification/log_capture.h"
#include "cli/words/texts.h"
#include "words/zigbee_rule_texts.h"

namespace tembra::cli {
namespace {

using words::entriesText;
using words::hex4;
using words::outcomeText;
using words::testsText;

constexpr std::size_t kMostClusters = std::size(ZbDeviceInfo{}.clusters);
constexpr char kGenericName[] = "GenericDevice";

// What the library makes of the first clusters of a device.
struct Stage {
  ZbDeviceInfo device;
  std::vector<std::string> log;
  bool survived = true;  ///< false: a decision ended the classification
  std::string name;
  int zoneClassifiedAs = DEVTYPE_UNKNOWN;
};

int clusterAt(const ZbDeviceInfo& device, std::size_t position) {
  return position < kMostClusters ? device.clusters[position].cluster : static_cast<int>(ZB_END);
}

// A device that is undecided at the end is made generic there, which is taken back: it is not the end yet.
void takeBackGeneric(Stage& stage) {
  if (!stage.survived || stage.name.rfind(kGenericName, 0) != 0) return;
  stage.device.devType = DEVTYPE_UNKNOWN;
  stage.name.clear();
}

// A cluster without a rule does nothing by itself, but may tell the one before it what it is: it is left in its place.
Stage afterClusters(TembraAssociation& service, const ZbDeviceInfo& device, std::size_t count) {
  const std::size_t end = zbFindClusterRule(clusterAt(device, count)) == nullptr ? count + 1 : count;
  service.zbDevice = device;
  service.devName[0] = '\0';
  if (end < kMostClusters) service.zbDevice.clusters[end].cluster = ZB_END;
  LogCapture log;
  Stage stage;
  stage.survived = service.validate_DeviceType() == 0;
  stage.log = log.take();
  if (stage.survived) stage.log.pop_back();  // the count at the end
  stage.device = service.zbDevice;
  stage.name = fieldText(service.devName);
  stage.zoneClassifiedAs = service.classifiedType;
  takeBackGeneric(stage);
  return stage;
}

std::string addedEntries(const ZbDeviceInfo& before, const ZbDeviceInfo& after) {
  std::vector<unsigned char> types;
  for (int i = before.indexCount; i < after.indexCount; ++i) types.push_back(after.indexes[i].type);
  return entriesText(types.data(), types.size());
}

std::string ruleReason(const ZbClusterRule& rule, const ZbDeviceInfo& before, const Stage& after) {
  const std::string wanted = entriesText(rule.entries);
  const std::string added = after.survived ? addedEntries(before, after.device) : wanted;
  const std::string entries = "entries " + wanted + (added == wanted ? "" : ", of which there is room for " + added);
  const ZbDecision* decision = zbFindDecision(rule.cluster, before);
  if (decision == nullptr) return entries + "; decides nothing";
  return entries + "; " + testsText(decision->tests[0], decision->tests[1]) + ": " + outcomeText(*decision);
}

// What a zone's model changes, and what it makes of the device afterwards.
std::string modelReason(const ZbDeviceInfo& before, unsigned short endpoint, const std::vector<std::string>& said) {
  std::string reason;
  const ZbZoneTypeException* exception = zbFindZoneTypeException(before);
  if (exception != nullptr) {
    const std::string where = " on endpoint " + std::to_string(exception->endpoint);
    const std::string type = "of type " + std::to_string(exception->type);
    const bool changes = zbChangesZoneOn(*exception, endpoint);
    reason += "; " + testsText(exception->test) + ": " + type + (changes ? where : " only" + where);
  }
  const ZbZoneAfterwards* afterwards = zbFindZoneAfterwards(before);
  if (afterwards == nullptr) return reason;
  const auto tells = [&](const std::string& line) { return std::string_view(afterwards->log).ends_with(line); };
  const auto found = afterwards->entry == 0 ? 1 : std::ranges::count_if(said, tells);
  reason += "; " + testsText(afterwards->test) + ": ";
  if (afterwards->entry != 0)
    reason += std::to_string(found) + " entries " + std::to_string(afterwards->entry) + " found, ";
  return reason + (found > 0 ? "then type " + std::to_string(afterwards->type) : "which changes nothing");
}

std::string zoneReason(const ZbDeviceInfo& before, const Stage& after, const std::vector<std::string>& said,
                       std::size_t position) {
  const unsigned short endpoint = before.clusters[position].endpoint;
  const ZbZoneCase& zoneCase = zbFindZoneCase(clusterAt(before, position + 1), before);
  const std::string outcome =
      "entries " + addedEntries(before, after.device) + "; type " + std::to_string(after.device.devType) + ", name \"";
  switch (zoneCase.outcome) {
    case ZB_ZONE_CAMERA:
      return "a camera, for " + hex4(zoneCase.next) + " comes next; " + outcome + after.name + "\"";
    case ZB_ZONE_IGNORED:
      if (zoneCase.next != ZB_ANY_CLUSTER) return "ignored, for " + hex4(zoneCase.next) + " comes next";
      return "ignored, the device is of type " + std::to_string(before.devType) + " already";
    case ZB_ZONE_CLASSIFIED:
      break;
  }
  const std::string zone = zbFindZoneName(before.zoneType, before);
  const std::string classified = zone + ", classified as type " + std::to_string(after.zoneClassifiedAs) + "; ";
  return "zone type " + hex4(before.zoneType) + " is " + classified + outcome +
         zbFindDisplayName(zone.c_str(), before) + "\"" + modelReason(before, endpoint, said);
}

std::vector<std::string> logSince(const Stage& before, const Stage& after) {
  return {after.log.begin() + static_cast<std::ptrdiff_t>(before.log.size()), after.log.end()};
}

void explainCluster(std::size_t position, const Stage& before, const Stage& after, std::vector<std::string>& reasons) {
  const auto [cluster, endpoint] = before.device.clusters[position];
  const std::string where = hex4(cluster) + " on endpoint " + std::to_string(endpoint) + ": ";
  const ZbClusterRule* rule = zbFindClusterRule(cluster);
  if (rule == nullptr) {
    reasons.push_back(where + "ignored, no rule");
    return;
  }
  const std::vector<std::string> said = logSince(before, after);
  const std::string why = cluster == ZB_IAS_ZONE ? zoneReason(before.device, after, said, position)
                                                 : ruleReason(*rule, before.device, after);
  reasons.push_back(where + rule->title + "; " + why);
  for (const std::string& line : said) reasons.push_back("log: " + line);
}

// The clusters' reasons, and how the device stands behind the last one that was visited.
Stage explainClusters(TembraAssociation& service, const ZbDeviceInfo& device, std::vector<std::string>& reasons) {
  Stage before;
  before.device = device;
  for (std::size_t i = 0; clusterAt(device, i) != ZB_END && before.survived; ++i) {
    Stage after = afterClusters(service, device, i + 1);
    std::ranges::copy(device.clusters, before.device.clusters);
    explainCluster(i, before, after, reasons);
    before = std::move(after);
  }
  return before;
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
  const Stage last = explainClusters(service, device, result.reasons);
  service.zbDevice = device;
  LogCapture log;
  result.classified = service.zb_createAnyDevice() == 0;
  if (!result.classified) return result;
  result.reasons.push_back("log: " + log.take().back());
  result.type = static_cast<DevType>(service.zbDevice.devType);
  result.name = fieldText(service.devName);
  if (last.device.devType == DEVTYPE_UNKNOWN) {
    result.reasons.push_back("undecided at the end: type " + std::to_string(result.type) + ", name \"" + kGenericName +
                             "\"");
  }
  result.slots = slotsOf(service.zbDevice);
  result.subTypes = subTypesOf(service, service.classifiedType);
  result.reasons.push_back("to choose from: what the zone's type " + std::to_string(service.classifiedType) + " has");
  return result;
}

}  // namespace tembra::cli
