#include "sim/ha/device_list.h"

#include <array>
#include <charconv>
#include <utility>

#include "depot/keys.h"
#include "sim/core/record_bytes.h"
#include "tembra/platform.h"

namespace tembra::sim {
namespace {

using depot::kNextIdKey, depot::kVersionKey;

std::string typeName(DevType type) {
  std::array<char, 512> name{};
  DevtypeEnumToStr(type, name.data());
  return name.data();
}

// The server's own bytes of a record begin here.
using Note = char[sizeof DeviceRecord::at404];

DeviceRecord recordOf(int id, const NewDevice& device, std::string_view note) {
  DeviceRecord record{};
  record.id = id;
  setText(record.name, device.name);
  record.zwaveNode = device.zwaveNode;
  record.zigbeeAddress = device.zigbeeAddress;
  record.radioKind = device.radioKind;
  setText(record.typeName, typeName(device.type));
  Note text{};
  setText(text, note);
  std::memcpy(record.at404, text, sizeof text);
  return record;
}

IndexRecord indexRecordOf(const NewIndex& index) {
  IndexRecord record{};
  record.at0[0] = index.type;
  record.at0[1] = index.instance;
  setText(record.value, index.value);
  return record;
}

}  // namespace

DeviceList::DeviceList(std::string path) : path_(std::move(path)) {
  DepotFile file(path_);
  if (!file.get(kNextIdKey)) file.put(kNextIdKey, std::to_string(nextId_));
  if (!file.get(kVersionKey)) file.put(kVersionKey, "1");
  file.close();
}

// A reader may have deleted a file that it could not mend: the count goes on from memory then.
int DeviceList::takeId(DepotFile& file) {
  if (const auto stored = file.get(kNextIdKey)) {
    const char* const text = reinterpret_cast<const char*>(stored->data());
    std::from_chars(text, text + stored->size(), nextId_);
  }
  const int id = nextId_++;
  file.put(kNextIdKey, std::to_string(nextId_));
  if (!file.get(kVersionKey)) file.put(kVersionKey, "1");
  return id;
}

int DeviceList::add(const NewDevice& device, std::string_view note) {
  DepotFile file(path_);
  const int id = takeId(file);
  const std::string key = std::to_string(id);
  file.put(key, bytesOf(recordOf(id, device, note)));
  for (const NewIndex& index : device.indexes) {
    file.put(key + "." + std::to_string(index.number), bytesOf(indexRecordOf(index)));
  }
  file.close();
  return id;
}

std::vector<DeviceList::Entry> DeviceList::entriesOf(const DepotFile& file) {
  std::vector<Entry> entries;
  for (const std::string& key : file.keys()) {
    if (!depot::isDeviceKey(key)) continue;
    if (const auto value = file.get(key)) entries.push_back({key, recordFrom<DeviceRecord>(*value)});
  }
  return entries;
}

int DeviceList::drop(const Test& test) {
  int dropped = 0;
  DepotFile file(path_);
  const std::vector<std::string> keys = file.keys();
  for (const Entry& entry : entriesOf(file)) {
    if (!test(entry.record)) continue;
    const std::string indexPrefix = entry.key + ".";
    file.erase(entry.key);
    for (const std::string& key : keys) {
      if (key.starts_with(indexPrefix)) file.erase(key);
    }
    ++dropped;
  }
  file.close();
  return dropped;
}

std::vector<DeviceRecord> DeviceList::devices() const {
  std::vector<DeviceRecord> records;
  DepotFile file(path_);
  for (const Entry& entry : entriesOf(file)) records.push_back(entry.record);
  file.close();
  return records;
}

std::vector<DatabaseRecord> DeviceList::contents() const {
  std::vector<DatabaseRecord> records;
  DepotFile file(path_);
  for (const std::string& key : file.keys()) {
    if (auto value = file.get(key)) records.emplace_back(key, std::move(*value));
  }
  file.close();
  return records;
}

void DeviceList::make(const std::string& path, const std::vector<DatabaseRecord>& contents) {
  DepotFile file(path);
  for (const auto& [key, value] : contents) file.put(key, value);
  file.close();
}

std::string DeviceList::noteOf(const DeviceRecord& record) {
  Note text{};
  std::memcpy(text, record.at404, sizeof text);
  return textIn(text);
}

}  // namespace tembra::sim
