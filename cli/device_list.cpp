#include "device_list.h"

#include <tembra/records.h>
#include <tembra/vocabulary.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>

#include "database_file.h"
#include "failure.h"
#include "texts.h"

namespace tembra::cli {
namespace {

constexpr int kSmallestRecord = 28;  // of the Depot format, a key and a value of no bytes

struct Freed {
  void operator()(char* buffer) const { std::free(buffer); }
};
using Buffer = std::unique_ptr<char, Freed>;

std::vector<std::string> readKeys(DEPOT* depot) {
  std::vector<std::string> keys;
  // The walk of a damaged file may never end by itself.
  auto most = static_cast<std::size_t>(dpfsiz(depot) / kSmallestRecord);
  if (dpiterinit(depot) == 0) return keys;
  for (Buffer key(dpiternext(depot, nullptr)); key && most > 0; key.reset(dpiternext(depot, nullptr)), --most) {
    keys.emplace_back(key.get());
  }
  return keys;
}

// A short value fills the beginning of the record, the rest stays zero.
std::optional<DeviceRecord> readRecord(DEPOT* depot, const std::string& key) {
  int size = 0;
  const Buffer value(dpget(depot, key.c_str(), -1, 0, sizeof(DeviceRecord), &size));
  if (!value) return std::nullopt;
  DeviceRecord record{};
  std::memcpy(&record, value.get(), std::min(static_cast<std::size_t>(size), sizeof record));
  return record;
}

std::string hexAddress(unsigned address) {
  char text[16];
  std::snprintf(text, sizeof text, "0x%04x", address);
  return text;
}

Device describe(const DeviceRecord& record, int values) {
  Device device{record.id, fieldText(record.name), fieldText(record.typeName), "", "", values};
  switch (record.radioKind) {
    case RADIO_ZWAVE:
      device.radio = "Z-Wave";
      device.address = std::to_string(record.zwaveNode);
      break;
    case RADIO_IP:
      device.radio = "IP";
      break;
    default:
      device.radio = record.zigbeeAddress == 0 ? "other" : "ZigBee";
      if (record.zigbeeAddress != 0) device.address = hexAddress(record.zigbeeAddress);
  }
  return device;
}

using Row = std::vector<std::string>;

Row row(const Device& device) {
  return {std::to_string(device.id),    printable(device.name), printable(device.type), device.radio, device.address,
          std::to_string(device.values)};
}

std::size_t characters(const std::string& text) {
  return static_cast<std::size_t>(
      std::ranges::count_if(text, [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; }));
}

}  // namespace

std::vector<Device> readDevices(const std::string& path) {
  const DepotReader depot = openForReading(path);
  if (!depot) return {};
  const std::vector<std::string> keys = readKeys(depot.get());
  std::map<std::string, int> values;
  for (const std::string& key : keys) {
    if (const auto point = key.find('.'); point != std::string::npos) ++values[key.substr(0, point)];
  }
  std::vector<Device> devices;
  for (const std::string& key : keys) {
    if (key == "NextDevid" || key == "Version" || key.find('.') != std::string::npos) continue;
    const auto record = readRecord(depot.get(), key);
    if (!record) throw Failure(kFailed, "the record " + printable(key) + " of " + path + " cannot be read.");
    devices.push_back(describe(*record, values[key]));
  }
  std::ranges::stable_sort(devices, {}, &Device::id);
  return devices;
}

std::string deviceTable(const std::vector<Device>& devices) {
  std::vector<Row> rows = {{"Id", "Name", "Type", "Radio", "Address", "Values"}};
  for (const Device& device : devices) rows.push_back(row(device));
  std::vector<std::size_t> widths(rows[0].size());
  for (const Row& each : rows) {
    for (std::size_t i = 0; i < each.size(); ++i) widths[i] = std::max(widths[i], characters(each[i]));
  }
  std::string table;
  for (const Row& each : rows) {
    std::string line;
    for (std::size_t i = 0; i < each.size(); ++i) {
      line += each[i] + std::string(widths[i] - characters(each[i]) + 2, ' ');
    }
    table += line.substr(0, line.find_last_not_of(' ') + 1) + "\n";
  }
  return table;
}

nlohmann::ordered_json deviceJson(const Device& device) {
  return {{"id", device.id},       {"name", device.name},       {"type", device.type},
          {"radio", device.radio}, {"address", device.address}, {"values", device.values}};
}

}  // namespace tembra::cli
