// A ZigBee device as a JSON text describes it.
#include <iterator>

#include "device_description_members.h"

namespace tembra::cli {
namespace {

using nlohmann::json;

constexpr unsigned short kClustersEnd = 0xFFFF;
constexpr int kLargestEndpoint = 255;
constexpr std::size_t kRoomForClusters = std::size(ZbDeviceInfo{}.clusters);

unsigned short describedWord(const json& value, const std::string& name, int most = 0xFFFF) {
  return static_cast<unsigned short>(describedNumber(value, name, 0, most));
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
    clusters.push_back(
        {describedWord(one[0], "a cluster"), describedWord(one[1], "a cluster's endpoint", kLargestEndpoint)});
  }
  fillClusters(clusters, device, remarks);
}

struct DescribedEndpoint {
  unsigned short id;
  std::vector<unsigned short> clusters;
};

void readEndpointClusters(const json& value, const std::string& name, DescribedEndpoint& endpoint,
                          Remarks& /*remarks*/) {
  for (const json& cluster : describedList(value, name, kRoomForClusters)) {
    endpoint.clusters.push_back(describedWord(cluster, "a cluster"));
  }
}

constexpr DescriptionMember<DescribedEndpoint> kEndpointMembers[] = {
    {"endpoint", nullptr, readNumber<&DescribedEndpoint::id, 0, kLargestEndpoint>},
    {"clusters", nullptr, readEndpointClusters},
};

void readEndpoints(const json& value, const std::string& name, ZbDeviceInfo& device, Remarks& remarks) {
  std::vector<ZbClusterEntry> clusters;
  for (const json& one : describedList(value, name, kLargestEndpoint + 1)) {
    if (!one.is_object() || !one.contains("endpoint") || !one.contains("clusters")) {
      refuseDescription("has one of the " + name + " without its endpoint and clusters");
    }
    DescribedEndpoint endpoint{};
    readMembers(one, kEndpointMembers, endpoint, remarks);
    for (const unsigned short cluster : endpoint.clusters) clusters.push_back({cluster, endpoint.id});
  }
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

}  // namespace

ZbDeviceInfo readZigbeeDescription(const json& device, Remarks& remarks) {
  if (device.contains("clusters") && device.contains("endpoints")) refuseDescription("has both clusters and endpoints");
  ZbDeviceInfo record{};
  readMembers(device, kZigbeeMembers, record, remarks);
  return record;
}

}  // namespace tembra::cli
