#include "device_list.h"

#include <tembra/records.h>
#include <tembra/vocabulary.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <map>
#include <nlohmann/json.hpp>

#include "database_contents.h"
#include "database_file.h"
#include "platform/printable.h"
#include "texts.h"

namespace tembra::cli {
namespace {

// A short value fills the beginning of the record, the rest stays zero.
DeviceRecord recordFrom(const std::string& value) {
  DeviceRecord record{};
  std::memcpy(&record, value.data(), std::min(value.size(), sizeof record));
  return record;
}

// A device's key is its id. Where a file is damaged, there seem to be records with other keys, or without one.
bool isId(const std::string& key) {
  return !key.empty() && std::ranges::all_of(key, [](char c) { return c >= '0' && c <= '9'; });
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

DeviceList readDevices(const std::string& path) {
  const DepotReader depot = openForReading(path);
  if (!depot) return {};
  const DatabaseContents contents = readContents(depot.get());
  std::map<std::string, int> values;
  for (const StoredRecord& stored : contents.records) {
    if (const auto point = stored.key.find('.'); point != std::string::npos) ++values[stored.key.substr(0, point)];
  }
  DeviceList list{{}, contents.areComplete};
  for (const StoredRecord& stored : contents.records) {
    if (isId(stored.key)) list.devices.push_back(describe(recordFrom(stored.value), values[stored.key]));
  }
  std::ranges::stable_sort(list.devices, {}, &Device::id);
  return list;
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
