// The devices of the home, read from the device database.
#ifndef TEMBRA_CLI_DEVICE_LIST_H
#define TEMBRA_CLI_DEVICE_LIST_H

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

namespace tembra::cli {

struct Device {
  int id;
  std::string name;
  std::string type;
  std::string radio;
  std::string address;  ///< Z-Wave node or ZigBee short address; empty when the radio has none
  int values;           ///< number of value slots
};

struct DeviceList {
  std::vector<Device> devices;  ///< in the order of their ids
  bool isComplete = true;       ///< false: the database is damaged, and these are the devices that can be read
};

/// Throws Failure when the database cannot be opened.
[[nodiscard]] DeviceList readDevices(const std::string& path);

/// A table with a heading.
[[nodiscard]] std::string deviceTable(const std::vector<Device>& devices);

[[nodiscard]] nlohmann::ordered_json deviceJson(const Device& device);

}  // namespace tembra::cli

#endif
