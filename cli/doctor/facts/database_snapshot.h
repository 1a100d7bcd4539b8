// The device database as it stands in its file, read without the Depot library and without changing anything.
#ifndef TEMBRA_CLI_DOCTOR_DATABASE_SNAPSHOT_H
#define TEMBRA_CLI_DOCTOR_DATABASE_SNAPSHOT_H

#include <sys/types.h>
#include <tembra/records.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "cli/context.h"
#include "recording/database_lines.h"

namespace tembra::cli::doctor {

/// Another process's lock on the file.
struct FileLock {
  pid_t process = 0;  ///< 0 and less: the kernel does not name it
  bool isWriters = false;
};

struct StoredRecord {
  std::string key;
  DeviceRecord device{};  ///< zero behind the end of what is stored
};

struct Snapshot {
  int error = 0;                 ///< why nothing was read; EAGAIN: the file stays locked
  std::optional<FileLock> lock;  ///< that kept the reader off
  long long size = 0;
  int records = 0;
  std::string damage;               ///< "it ends within its header"; empty: none
  bool isRepairedWhenUsed = false;  ///< the library finds the damage; else it reads the file as far as it can
  std::vector<recording::DatabaseRecord>
      contents;  ///< every record in the file's order, as far as the library reads it
  std::vector<StoredRecord> devices;
  std::map<std::string, std::string> values;  ///< "12.9": the text of that value slot
  std::optional<std::string> nextId;

  /// A record that was read.
  void take(const recording::DatabaseRecord& record);

  /// Those whose key is a number, as the HA server writes them.
  [[nodiscard]] std::size_t numberedDevices() const;
};

/// Which value slots of a device have its Hue bridge and that bridge's user: "12.1" and "12.9".
struct HueSlots {
  std::string bridge;
  std::string user;
};

/// Nothing: it is no Hue device.
[[nodiscard]] std::optional<HueSlots> hueSlotsOf(const StoredRecord& stored);

/// Waits at most a second for a writer. Throws Interrupted.
[[nodiscard]] Snapshot readSnapshot(const Context& context, const char* path);

}  // namespace tembra::cli::doctor

#endif
