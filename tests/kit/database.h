// The device database as the HA server writes it, and the ways in which it can be broken.
#ifndef TEMBRA_TESTS_KIT_DATABASE_H
#define TEMBRA_TESTS_KIT_DATABASE_H

#include <depot.h>
#include <tembra/records.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "kit/interposed_database.h"
#include "kit/text.h"

namespace kit {

/// A device record: Device(12, "Lamp").zwave(5), Device(13, "Door").zigbee(0x1234), Device(14, "Hue").ip().
class Device {
 public:
  Device(int id, const std::string& name);

  Device& zwave(unsigned node);
  Device& zigbee(unsigned address);  // radio kind 1
  Device& ip();
  Device& type(const std::string& typeName);
  Device& cutTo(std::size_t length);  // 0 to 512 bytes

  /// For everything else.
  DeviceRecord& record() { return record_; }

  [[nodiscard]] std::string key() const;
  [[nodiscard]] Bytes bytes() const;

 private:
  DeviceRecord record_{};
  std::size_t length_ = sizeof(DeviceRecord);
};

/// Where the library looks for it, unless a test says otherwise.
inline constexpr char kDatabasePath[] = "/tmp/ddb";

/// An open database, locked as long as it lives.
class OpenDatabase {
 public:
  explicit OpenDatabase(const char* path = kDatabasePath, int mode = DP_OWRITER | DP_OCREAT, int buckets = -1);
  ~OpenDatabase();
  OpenDatabase(const OpenDatabase&) = delete;
  OpenDatabase& operator=(const OpenDatabase&) = delete;
  [[nodiscard]] DEPOT* depot() const { return depot_; }

  void put(const std::string& key, const Bytes& value) const;
  void put(const std::string& key, const std::string& value) const { put(key, Bytes(value.begin(), value.end())); }
  void put(const Device& device) const { put(device.key(), device.bytes()); }
  void index(int id, int number, const std::string& value) const;

 private:
  const UnwatchedDatabaseUse own_;
  DEPOT* depot_;
};

/// A file through the Depot API. Each call opens and closes it, so use it only while the library is at rest: closing
/// any descriptor of the file drops the process's lock. It needs nothing else of the kit.
class Database {
 public:
  /// The path is read at each call.
  constexpr Database() = default;
  constexpr explicit Database(const char* path) : path_(path) {}

  /// Creates an empty database unless there is one.
  Database& create();

  Database& nextId(const std::string& text);
  Database& put(const Device& device);
  Database& put(const std::string& key, const Bytes& value);
  Database& put(const std::string& key, const std::string& value);
  Database& index(int id, int number, const std::string& value);
  Database& drop(const std::string& key);

  [[nodiscard]] bool exists() const;
  [[nodiscard]] int records() const;
  [[nodiscard]] std::vector<std::string> keys() const;  // in the order of the file
  [[nodiscard]] std::set<std::string> keySet() const;
  [[nodiscard]] std::map<std::string, std::string> all() const;  // none where there is no database
  [[nodiscard]] Bytes file() const;

  /// "missing" where there is no such record.
  [[nodiscard]] std::string text(const std::string& key) const;

  /// Zero beyond the end of what is stored.
  template <typename Record>
  [[nodiscard]] Record record(const std::string& key) const {
    Record record{};
    const std::string value = text(key);
    std::memcpy(&record, value.data(), std::min(value.size(), sizeof record));
    return record;
  }

  // Damage. The file is there and well before.
  void remove();
  void replaceWith(const Bytes& content);  // rubbish
  void makeUnopenable();                   // fails twice and is then deleted: a file of one byte
  void makeRepairable();                   // fails once, the repair is complete: one byte too many
  void cutTo(std::size_t length);
  void breakRecord(const std::string& key);  // the walk ends there, and closing fails
  void overwriteInRecord(const std::string& key, std::size_t offset, unsigned value);  // a word of its 28-byte header
  void breakEveryValue();  // the walk finds keys, but no value
  void makeDirectory();

 private:
  void overwrite(std::size_t offset, const Bytes& bytes);

  const char* path_ = kDatabasePath;
};

}  // namespace kit

#endif
