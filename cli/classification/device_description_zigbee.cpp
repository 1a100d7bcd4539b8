// A ZigBee device as a JSON text describes it.
#include <algorithm>
#include <iterator>
#include <map>
#include <optional>

#include "cli/classification/device_description_members.h"
#include "cli/words/numbers.h"
#include "cli/words/texts.h"
#include "words/class_names.h"

namespace tembra::cli {
namespace {

using nlohmann::json;

constexpr unsigned short kClustersEnd = 0xFFFF;
constexpr int kLargestEndpoint = 255;
constexpr std::size_t kLongestName = 40;  // of a cluster
constexpr std::size_t kRoomForClusters = std::size(ZbDeviceInfo{}.clusters);

unsigned short describedWord(const json& value, const std::string& name, int most = 0xFFFF) {
  return static_cast<unsigned short>(describedNumber(value, name, 0, most));
}

unsigned short describedCluster(const json& value) {
  return static_cast<unsigned short>(describedClass(value, "a cluster", 0, 0xFFFF, words::clusterNumber));
}

// An end mark among the clusters is one for the library, too.
void fillClusters(const std::vector<ZbClusterEntry>& clusters, ZbDeviceInfo& device, Remarks& remarks) {
  auto* const end = std::ranges::copy(clusters, device.clusters).out;
  if (end != std::end(device.clusters)) end->cluster = kClustersEnd;
  const auto mark = std::ranges::find(clusters, kClustersEnd, &ZbClusterEntry::cluster);
  const auto ignored = std::distance(mark, clusters.end()) - 1;
  if (ignored > 0) remarks.push_back("0xFFFF ends the list of clusters; ignored behind it: " + std::to_string(ignored));
}

void readClusters(const json& value, const std::string& name, ZbDeviceInfo& device, Remarks& remarks) {
  std::vector<ZbClusterEntry> clusters;
  for (const json& one : describedList(value, name, kRoomForClusters)) {
    if (!one.is_array() || one.size() != 2) {
      refuseDescription("has one of the " + name + " that is not [cluster, endpoint]");
    }
    clusters.push_back({describedCluster(one[0]), describedWord(one[1], "a cluster's endpoint", kLargestEndpoint)});
  }
  fillClusters(clusters, device, remarks);
}

// The names under which an endpoint has the clusters that it offers; "clusters" may have them in its "input".
constexpr const char* kOffered[] = {"clusters", "input_clusters", "in_clusters", "inClusterList"};

const json* offeredClusters(const json& endpoint) {
  for (const char* name : kOffered) {
    const auto member = endpoint.find(name);
    if (member == endpoint.end()) continue;
    if (!member->is_object()) return &*member;
    if (member->contains("input")) return &member->at("input");
  }
  return nullptr;
}

using Clusters = std::vector<ZbClusterEntry>;

// Other tools have names of their own, also for the clusters of makers.
bool hasUnknownName(const json& cluster) {
  return cluster.is_string() && !isDescribedNumber(cluster) && !words::clusterNumber(cluster.get<std::string>());
}

// What else tools tell of an endpoint (its profile, what it asks of others) has no place in the record. A cluster of
// unknown name goes into `passedOver`; null: it is refused.
void addEndpoint(const json& endpoint, unsigned short id, const std::string& name, Clusters& clusters,
                 Remarks* passedOver) {
  const json* offered = endpoint.is_object() ? offeredClusters(endpoint) : nullptr;
  if (offered == nullptr) refuseDescription("has one of the " + name + " without its endpoint and clusters");
  for (const json& cluster : describedList(*offered, "clusters", kRoomForClusters)) {
    if (passedOver != nullptr && hasUnknownName(cluster)) {
      const std::string place = " on endpoint " + std::to_string(id);
      passedOver->push_back("passed over: cluster " + cutText(cluster.get<std::string>(), kLongestName) + place);
    } else {
      clusters.push_back({describedCluster(cluster), id});
    }
  }
}

Clusters clustersOfList(const json& value, const std::string& name) {
  Clusters clusters;
  for (const json& one : describedList(value, name, kLargestEndpoint + 1)) {
    if (!one.is_object() || !one.contains("endpoint")) {
      refuseDescription("has one of the " + name + " without its endpoint and clusters");
    }
    addEndpoint(one, describedWord(one["endpoint"], "endpoint", kLargestEndpoint), name, clusters, nullptr);
  }
  return clusters;
}

// {"1": {...}, "242": {...}}, in the order of the numbers.
Clusters clustersOfObject(const json& value, const std::string& name, Remarks& remarks) {
  std::map<unsigned short, const json*> endpoints;
  for (const auto& [key, endpoint] : value.items()) {
    const std::optional<int> id = parseNumber(key);
    if (!id || *id < 0 || *id > kLargestEndpoint) {
      refuseDescription("needs a number from 0 to 255 for each of the " + name);
    }
    const bool isNew = endpoints.emplace(static_cast<unsigned short>(*id), &endpoint).second;
    if (!isNew) refuseDescription("has the endpoint " + std::to_string(*id) + " twice");
  }
  Clusters clusters;
  for (const auto& [id, endpoint] : endpoints) addEndpoint(*endpoint, id, name, clusters, &remarks);
  return clusters;
}

void readEndpoints(const json& value, const std::string& name, ZbDeviceInfo& device, Remarks& remarks) {
  const Clusters clusters = value.is_object() ? clustersOfObject(value, name, remarks) : clustersOfList(value, name);
  if (clusters.size() > kRoomForClusters) {
    refuseDescription("has " + std::to_string(clusters.size()) + " clusters, the record has room for " +
                      std::to_string(kRoomForClusters));
  }
  fillClusters(clusters, device, remarks);
}

void readZoneType(const json& value, const std::string& name, ZbDeviceInfo& device, Remarks& /*remarks*/) {
  if (!value.is_null()) device.zoneType = describedWord(value, name);
}

template <unsigned short ZbDeviceInfo::*... Words>
void readWords(const json& value, const std::string& name, ZbDeviceInfo& device, Remarks& /*remarks*/) {
  if (!value.is_array() || value.size() != sizeof...(Words)) {
    refuseDescription("needs " + std::to_string(sizeof...(Words)) + " numbers for " + name);
  }
  auto number = value.begin();
  ((device.*Words = describedWord(*number++, name)), ...);
}

constexpr DescriptionMember<ZbDeviceInfo> kZigbeeMembers[] = {
    {"manufacturer", nullptr, readText<&ZbDeviceInfo::manufacturer>},
    {"model", nullptr, readText<&ZbDeviceInfo::model>},
    {"zone_type", "zoneType", readZoneType},
    {"clusters", nullptr, readClusters},
    {"endpoints", nullptr, readEndpoints},
    {"ac_checks", "acChecks", readWords<&ZbDeviceInfo::acCheckA, &ZbDeviceInfo::acCheckB, &ZbDeviceInfo::acCheckC>},
    {"product_words", "productWords", readWords<&ZbDeviceInfo::productWordA, &ZbDeviceInfo::productWordB>},
    {"type", nullptr, readNumber<&ZbDeviceInfo::devType, 0, 255>},
    {"label", nullptr, passOver},
    {"description", nullptr, passOver},
    {"source", nullptr, passOver},
    {"derived", nullptr, passOver},
};

struct OtherWord {
  const char* theirs;
  const char* ours;
};

constexpr OtherWord kOtherWords[] = {{"manufName", "manufacturer"},
                                     {"manufacturer_name", "manufacturer"},
                                     {"modelId", "model"},
                                     {"model_id", "model"},
                                     {"modelID", "model"}};

std::string ourWordFor(const std::string& name) {
  const auto* const word = std::ranges::find(kOtherWords, name, &OtherWord::theirs);
  return word == std::end(kOtherWords) ? name : word->ours;
}

// The "type" of another tool is the device's part in the network, such as "Router".
bool hasPlaceInRecord(const std::string& name, const json& value) {
  if (name == "type" && !isDescribedNumber(value)) return false;
  return std::ranges::any_of(kZigbeeMembers, [&name](const auto& member) { return isNamed(member, name); });
}

// What other tools print of a device has many members that no record has room for.
json inOurWords(const json& device, Remarks& remarks) {
  json ours;
  std::string passedOver;
  for (const auto& [theirs, value] : device.items()) {
    const std::string name = ourWordFor(theirs);
    if (hasPlaceInRecord(name, value)) {
      if (ours.contains(name) && ours[name] != value) refuseDescription("has several values for \"" + name + "\"");
      ours[name] = value;
    } else {
      passedOver += (passedOver.empty() ? "" : ", ") + name;
    }
  }
  if (!passedOver.empty()) remarks.push_back("passed over: " + passedOver);
  return ours;
}

}  // namespace

ZbDeviceInfo readZigbeeDescription(const json& device, Remarks& remarks) {
  if (device.contains("clusters") && device.contains("endpoints")) refuseDescription("has both clusters and endpoints");
  ZbDeviceInfo record{};
  const bool isOfAnotherTool = device.contains("endpoints") && device["endpoints"].is_object();
  readMembers(isOfAnotherTool ? inOurWords(device, remarks) : device, kZigbeeMembers, record, remarks);
  return record;
}

}  // namespace tembra::cli
