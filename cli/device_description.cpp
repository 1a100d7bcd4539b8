#include "device_description.h"

#include <algorithm>
#include <cstring>
#include <nlohmann/json.hpp>

#include "failure.h"
#include "numbers.h"
#include "texts.h"

namespace tembra::cli {
namespace {

using nlohmann::json;

constexpr unsigned char kClassesEnd = 0xFF;
constexpr unsigned short kClustersEnd = 0xFFFF;

[[noreturn]] void refuse(const std::string& why) { throw Failure(kFailed, "the device description " + why + "."); }

// A number from 0 to `most`, as such or as a text ("0x0B04").
int number(const json& value, const std::string& what, int most) {
  std::optional<int> parsed;
  if (value.is_number_integer() && value >= 0 && value <= most) parsed = value.get<int>();
  if (value.is_string()) parsed = parseNumber(value.get<std::string>());
  if (!parsed || *parsed < 0 || *parsed > most) {
    refuse("has no number from 0 to " + std::to_string(most) + " for " + what);
  }
  return *parsed;
}

int member(const json& device, const char* name, int most, int otherwise) {
  const auto found = device.find(name);
  return found == device.end() || found->is_null() ? otherwise : number(*found, name, most);
}

const json& list(const json& device, const char* name) {
  static const json nothing = json::array();
  const auto found = device.find(name);
  if (found == device.end()) return nothing;
  if (!found->is_array()) refuse(std::string("has no list for ") + name);
  return *found;
}

void requireRoom(std::size_t count, std::size_t room, const char* what) {
  if (count > room)
    refuse("has " + std::to_string(count) + " " + what + ", the record has room for " + std::to_string(room));
}

// ---- Z-Wave ---------------------------------------------------------------------------------------------------------

void readClasses(const json& device, ZwNodeInfo& node) {
  const json& classes = list(device, "classes");
  requireRoom(classes.size(), sizeof node.commandClasses - 1, "command classes");
  std::size_t count = 0;
  for (const json& one : classes) {
    node.commandClasses[count++] = static_cast<unsigned char>(number(one, "a command class", kClassesEnd - 1));
  }
  node.commandClasses[count] = kClassesEnd;
}

void readValues(const json& device, ZwNodeInfo& node) {
  const json& values = list(device, "values");
  requireRoom(values.size(), std::size(node.values), "values");
  ZwValueTriple* triple = node.values;
  for (const json& value : values) {
    if (!value.is_array() || value.size() != 3) refuse("has a value that is not [command class, index, instance]");
    *triple++ = {static_cast<unsigned char>(number(value[0], "a value's command class", 255)),
                 static_cast<unsigned char>(number(value[1], "a value's index", 255)),
                 static_cast<unsigned char>(number(value[2], "a value's instance", 255))};
  }
}

ZwNodeInfo readNode(const json& device) {
  constexpr int usualBasicClass = 4;  // routing slave
  ZwNodeInfo node{};
  node.nodeId = static_cast<unsigned char>(member(device, "node", 255, 1));
  node.basicClass = static_cast<unsigned char>(member(device, "basic", 255, usualBasicClass));
  node.genericClass = static_cast<unsigned char>(member(device, "generic", 255, 0));
  node.specificClass = static_cast<unsigned char>(member(device, "specific", 255, 0));
  readClasses(device, node);
  readValues(device, node);
  return node;
}

// ---- ZigBee ---------------------------------------------------------------------------------------------------------

std::vector<ZbClusterEntry> readPairs(const json& pairs) {
  std::vector<ZbClusterEntry> clusters;
  for (const json& pair : pairs) {
    if (!pair.is_array() || pair.size() != 2) refuse("has a cluster that is not [cluster, endpoint]");
    clusters.push_back({static_cast<unsigned short>(number(pair[0], "a cluster", 0xFFFF)),
                        static_cast<unsigned short>(number(pair[1], "a cluster's endpoint", 0xFFFF))});
  }
  return clusters;
}

std::vector<ZbClusterEntry> readEndpoints(const json& endpoints) {
  std::vector<ZbClusterEntry> clusters;
  for (const json& endpoint : endpoints) {
    if (!endpoint.is_object()) refuse("has an endpoint that is no object");
    const auto id = static_cast<unsigned short>(member(endpoint, "endpoint", 0xFFFF, 1));
    for (const json& cluster : list(endpoint, "clusters")) {
      clusters.push_back({static_cast<unsigned short>(number(cluster, "a cluster", 0xFFFF)), id});
    }
  }
  return clusters;
}

void fillClusters(const json& device, ZbDeviceInfo& record) {
  const std::vector<ZbClusterEntry> clusters =
      device.contains("endpoints") ? readEndpoints(list(device, "endpoints")) : readPairs(list(device, "clusters"));
  requireRoom(clusters.size(), std::size(record.clusters), "clusters");
  auto* const end = std::copy(clusters.begin(), clusters.end(), record.clusters);
  if (end != std::end(record.clusters)) end->cluster = kClustersEnd;
}

template <std::size_t Size>
void readText(const json& device, const char* name, char (&field)[Size], std::vector<std::string>& remarks) {
  const auto found = device.find(name);
  if (found == device.end() || found->is_null()) return;
  if (!found->is_string()) refuse(std::string("has no text for ") + name);
  const auto whole = found->get<std::string>();
  const std::string text = cutText(whole, Size - 1);
  if (text != whole) remarks.push_back(std::string("the ") + name + " is cut to \"" + text + "\"");
  std::memcpy(field, text.c_str(), text.size() + 1);
}

void readWords(const json& device, const char* name, std::initializer_list<unsigned short*> words) {
  const json& values = list(device, name);
  if (values.empty()) return;
  if (values.size() != words.size())
    refuse(std::string("has not ") + std::to_string(words.size()) + " numbers for " + name);
  auto value = values.begin();
  for (unsigned short* word : words) *word = static_cast<unsigned short>(number(*value++, name, 0xFFFF));
}

ZbDeviceInfo readZigbee(const json& device, std::vector<std::string>& remarks) {
  ZbDeviceInfo record{};
  record.shortAddress = static_cast<unsigned short>(member(device, "address", 0xFFFF, 1));
  record.devType = static_cast<unsigned char>(member(device, "type", 255, 0));
  record.zoneType = static_cast<unsigned short>(member(device, "zone_type", 0xFFFF, 0));
  readText(device, "manufacturer", record.manufacturer, remarks);
  readText(device, "model", record.model, remarks);
  readWords(device, "ac_checks", {&record.acCheckA, &record.acCheckB, &record.acCheckC});
  readWords(device, "product_words", {&record.productWordA, &record.productWordB});
  fillClusters(device, record);
  return record;
}

}  // namespace

DeviceDescription readDescription(const std::string& text) {
  const json device = json::parse(text, nullptr, false);
  if (device.is_discarded()) refuse("is no JSON text");
  if (!device.is_object()) refuse("is no JSON object");
  DeviceDescription description;
  if (device.contains("generic")) {
    description.record = readNode(device);
  } else if (device.contains("clusters") || device.contains("endpoints")) {
    description.record = readZigbee(device, description.remarks);
  } else {
    refuse(R"(has neither "generic" (Z-Wave) nor "clusters" or "endpoints" (ZigBee))");
  }
  return description;
}

}  // namespace tembra::cli
