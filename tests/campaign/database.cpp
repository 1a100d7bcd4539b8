#include "campaign/database.h"

#include <tembra/records.h>
#include <tembra/vocabulary.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <map>
#include <set>

#include "kit/database.h"

namespace campaign {
namespace {

using Records = std::map<std::string, std::string>;
template <typename Record>
Record recordIn(const std::string& bytes) {
  Record record{};
  std::memcpy(&record, bytes.data(), std::min(bytes.size(), sizeof record));
  return record;
}

template <std::size_t N>
std::string text(const char (&field)[N]) {
  return {field, strnlen(field, N)};
}

StoredDevice deviceIn(const std::string& bytes) {
  const auto record = recordIn<DeviceRecord>(bytes);
  const unsigned address = record.radioKind == RADIO_ZWAVE ? record.zwaveNode : record.zigbeeAddress;
  return {record.id, record.radioKind, address, record.zigbeeAddress, text(record.name), text(record.typeName), {}};
}

constexpr int kMostSlots = 99;

void addSlots(StoredDevice& device, Records& records) {
  for (int number = 1; number <= kMostSlots; ++number) {
    const auto entry = records.find(std::to_string(device.id) + "." + std::to_string(number));
    if (entry == records.end()) continue;
    const auto record = recordIn<IndexRecord>(entry->second);
    device.slots.emplace_back(record.at0[0], record.at0[1]);
    records.erase(entry);
  }
}

void checkAddresses(Database& database) {
  std::set<std::pair<int, unsigned>> addresses;
  for (const StoredDevice& device : database.devices) {
    if (device.radio == RADIO_IP || addresses.emplace(device.radio, device.address).second) continue;
    database.mistakes.push_back("the device " + device.text() + " is there twice");
  }
}

}  // namespace

std::string StoredDevice::text() const {
  const std::string kind = radio == RADIO_ZWAVE ? "Z-Wave" : radio == RADIO_IP ? "IP" : "ZigBee";
  return kind + " " + std::to_string(address) + " \"" + name + "\" " + type;
}

Database readDatabase() {
  Database database;
  database.records = kit::Database().all();
  Records records = database.records;
  const int nextId = std::atoi(records["NextDevid"].c_str());
  records.erase("NextDevid");
  records.erase("Version");
  const Records all = records;
  for (const auto& [key, value] : all) {
    if (key.find('.') != std::string::npos) continue;
    StoredDevice device = deviceIn(value);
    if (std::to_string(device.id) != key) database.mistakes.push_back("the record " + key + " is of another id");
    if (device.id >= nextId) database.mistakes.push_back("the id " + key + " will be given out again");
    addSlots(device, records);
    records.erase(key);
    database.devices.push_back(device);
  }
  for (const auto& [key, value] : records) database.mistakes.push_back("the record " + key + " belongs to no device");
  checkAddresses(database);
  std::sort(database.devices.begin(), database.devices.end(),
            [](const StoredDevice& one, const StoredDevice& other) { return one.id < other.id; });
  return database;
}

}  // namespace campaign
