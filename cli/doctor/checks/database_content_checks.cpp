// What stands in the device database.
#include <tembra/vocabulary.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <map>
#include <tembra/frontend.hpp>

#include "cli/doctor/checks/checks.h"
#include "cli/doctor/facts/router.h"
#include "cli/words/texts.h"
#include "platform/printable.h"

namespace tembra::cli::doctor {
namespace {

// As the library tells radios apart.
bool isZigbee(const DeviceRecord& device) {
  return device.radioKind != RADIO_ZWAVE && device.radioKind != RADIO_IP && device.zigbeeAddress != 0;
}

std::string deviceText(const StoredRecord& stored) {
  return "device " + printable(stored.key) + " (" + printable(fieldText(stored.device.name)) + ")";
}

constexpr std::size_t kNextIdBytes = 10;
constexpr std::size_t kMostTold = 4;  // enough for a proof

// As the library reads the record: a leading number in its first ten bytes, else 0.
int nextId(const std::string& value) { return std::atoi(value.substr(0, kNextIdBytes).c_str()); }

bool isReadable(Router& router) { return router.database().error == 0; }

// A file that is not there is told by another check.
Verdict unread(Router& router) {
  const int error = router.database().error;
  if (error == ENOENT || error == 0) return well("There are no records to look at.");
  return note("The device database could not be read.", unreadProof(router));
}

constexpr char kRepaired[] = "Copy it away. The library repairs it at its next use, and deletes it if that fails.";
constexpr char kNotRepaired[] =
    "Copy it away, and let the HA server make a new one. The library does not repair such damage: a device that it "
    "cannot read counts as unknown.";

std::string zigbeeText(unsigned address) {
  char text[32];
  std::snprintf(text, sizeof text, "ZigBee address 0x%04x", address);
  return text;
}

// Of a node id only the low byte is compared.
std::string addressOf(const DeviceRecord& device) {
  if (device.radioKind != RADIO_ZWAVE) return zigbeeText(device.zigbeeAddress);
  return "Z-Wave node " + std::to_string(device.zwaveNode & 0xFFU);
}

std::string lackOf(const Snapshot& database, const StoredRecord& stored) {
  const auto slots = hueSlotsOf(stored);
  if (!slots) return "";
  for (const auto& [slot, what] : {std::pair{slots->bridge, "bridge"}, std::pair{slots->user, "user"}}) {
    const auto value = database.values.find(slot);
    if (value == database.values.end() || value->second.empty()) return deviceText(stored) + " has no " + what;
  }
  return "";
}

}  // namespace

Verdict checkDatabaseDamage(Router& router) {
  const Snapshot& database = router.database();
  if (!isReadable(router)) return unread(router);
  if (database.damage.empty()) {
    return well("The device database is whole: " + counted(static_cast<std::size_t>(database.records), "record") +
                ", " + counted(database.numberedDevices(), "device") + ".");
  }
  return finding("The device database is damaged.",
                 "In " + router.databaseName() + " " + database.damage + "; " +
                     counted(database.numberedDevices(), "device") + " can still be read.",
                 database.isRepairedWhenUsed ? kRepaired : kNotRepaired);
}

Verdict checkDatabaseIds(Router& router) {
  if (!isReadable(router)) return unread(router);
  std::vector<std::string> wrong;
  std::map<int, const StoredRecord*> seen;
  for (const StoredRecord& stored : router.database().devices) {
    const auto [other, isNew] = seen.emplace(stored.device.id, &stored);
    if (!isNew)
      wrong.push_back(deviceText(stored) + " and " + deviceText(*other->second) + " both say id " +
                      std::to_string(stored.device.id));
    if (isNew && stored.key != std::to_string(stored.device.id)) {
      wrong.push_back(deviceText(stored) + " says id " + std::to_string(stored.device.id));
    }
  }
  if (wrong.empty()) return well("Each device has an id of its own.");
  return finding("Ids of devices are used twice or are wrong.", listed(wrong, kMostTold) + ".",
                 "Remove these devices and add them again.");
}

Verdict checkDatabaseNextId(Router& router) {
  const Snapshot& database = router.database();
  if (!isReadable(router) || (database.devices.empty() && !database.nextId)) return unread(router);
  const std::string next = printable(database.nextId.value_or(""));
  const std::string advice = "Let the HA server count again: a new device would take the id of another.";
  if (!database.nextId) return finding("The device database has no next id.", "there is no record NextDevid.", advice);
  const auto largest = std::max_element(
      database.devices.begin(), database.devices.end(),
      [](const StoredRecord& one, const StoredRecord& other) { return one.device.id < other.device.id; });
  if (largest == database.devices.end() || nextId(*database.nextId) > largest->device.id) {
    return well("The next id is " + next + ".");
  }
  return finding("The next id is not behind the largest.",
                 "NextDevid is \"" + next + "\", and there is a device " + std::to_string(largest->device.id) + ".",
                 advice);
}

Verdict checkDatabaseRadios(Router& router) {
  if (!isReadable(router)) return unread(router);
  std::vector<std::string> wrong;
  for (const StoredRecord& stored : router.database().devices) {
    const DeviceRecord& device = stored.device;
    const unsigned node = device.zwaveNode & 0xFFU;
    const bool isNode = device.radioKind == RADIO_ZWAVE && node != 0 && node != 255;  // which say that no node left
    if (isNode || device.radioKind == RADIO_IP || isZigbee(device)) continue;
    wrong.push_back(deviceText(stored) + " has radio kind " + std::to_string(device.radioKind) +
                    " and no address that can leave");
  }
  if (wrong.empty()) return well("The radio of each device is known.");
  return finding("Devices have no radio that the library knows, so they cannot be removed at their button.",
                 listed(wrong, kMostTold) + ".", "Remove them in the HA server and add them again.");
}

Verdict checkDatabaseAddresses(Router& router) {
  if (!isReadable(router)) return unread(router);
  std::vector<std::string> wrong;
  std::map<std::string, const StoredRecord*> seen;
  for (const StoredRecord& stored : router.database().devices) {
    if (stored.device.radioKind != RADIO_ZWAVE && !isZigbee(stored.device)) continue;
    const auto [other, isNew] = seen.emplace(addressOf(stored.device), &stored);
    if (!isNew) wrong.push_back(other->first + " is " + deviceText(*other->second) + " and " + deviceText(stored));
  }
  // The library looks for the address of a ZigBee device that leaves among the devices of every radio.
  for (const StoredRecord& stored : router.database().devices) {
    const auto owner = isZigbee(stored.device) ? seen.end() : seen.find(zigbeeText(stored.device.zigbeeAddress));
    if (owner == seen.end()) continue;
    wrong.push_back(owner->first + " is " + deviceText(*owner->second) + ", and stands in " + deviceText(stored) +
                    ", which is of another radio");
  }
  if (wrong.empty()) return well("Each device has a radio address of its own.");
  return finding("Devices share a radio address, and are removed together or in place of each other.",
                 listed(wrong, kMostTold) + ".", "Remove the ones that are gone from the HA server's list.");
}

Verdict checkDatabaseTypes(Router& router) {
  if (!isReadable(router)) return unread(router);
  std::vector<std::string> wrong;
  for (const StoredRecord& stored : router.database().devices) {
    const std::string type = fieldText(stored.device.typeName);
    if (tembra_type_number(type.c_str()) != DEVTYPE_UNKNOWN || type == tembra_type_name(DEVTYPE_UNKNOWN)) continue;
    wrong.push_back(deviceText(stored) + " is a \"" + printable(type) + "\"");
  }
  if (wrong.empty()) return well("The type of each device is known.");
  return finding("Devices have types that this router's device-type library does not know.",
                 listed(wrong, kMostTold) + ".", "Bring HA server and device-type library to the same version.");
}

Verdict checkHueUsers(Router& router) {
  if (!isReadable(router)) return unread(router);
  std::vector<std::string> wrong;
  for (const StoredRecord& stored : router.database().devices) {
    if (std::string lack = lackOf(router.database(), stored); !lack.empty()) wrong.push_back(std::move(lack));
  }
  if (wrong.empty()) return well("Each Hue device has its bridge and user.");
  return finding("Hue devices lack their bridge or its user, so the bridge list is wrong.",
                 listed(wrong, kMostTold) + ".",
                 "Remove the bridge and add it again: tembra-assoc hue remove MAC, hue add MAC.");
}

}  // namespace tembra::cli::doctor
