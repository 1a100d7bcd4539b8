// The device list of the router: the records that the library reads, and the ids that it gives out.
#ifndef TEMBRA_SIM_HA_DEVICE_LIST_H
#define TEMBRA_SIM_HA_DEVICE_LIST_H

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "recording/database_lines.h"
#include "sim/ha/depot_file.h"
#include "sim/ha/new_device.h"
#include "tembra/records.h"

namespace tembra::sim {

using recording::DatabaseRecord;

/// The file is opened and closed within every call, as every reader does; all calls throw what DepotFile throws.
class DeviceList {
 public:
  /// Creates the file when it is missing, and writes the counters into an empty one.
  explicit DeviceList(std::string path);

  using Test = std::function<bool(const DeviceRecord&)>;

  /// Stores a device with its index records. `note` is kept in the record for `noteOf`. @return the device's id
  int add(const NewDevice& device, std::string_view note);
  /// Drops every device that passes the test, with its index records. @return how many
  int drop(const Test& test);
  std::vector<DeviceRecord> devices() const;

  /// Every record of the file, in the file's order.
  std::vector<DatabaseRecord> contents() const;
  /// Makes a file of these records; nothing may stand in its place.
  static void make(const std::string& path, const std::vector<DatabaseRecord>& contents);

  static std::string noteOf(const DeviceRecord& record);

 private:
  struct Entry {
    std::string key;
    DeviceRecord record;
  };

  static std::vector<Entry> entriesOf(const DepotFile& file);
  int takeId(DepotFile& file);

  std::string path_;
  int nextId_ = 1;
};

}  // namespace tembra::sim

#endif
