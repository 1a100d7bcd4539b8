// The device database as the HA server writes it, and the ways in which it can be broken.
#ifndef TEMBRA_TESTS_KIT_DATABASE_H
#define TEMBRA_TESTS_KIT_DATABASE_H

#include <tembra/records.h>

#include <string>
#include <vector>

#include "kit/trace.h"

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

/// The file of the library's DBName, through the Depot API. Each call opens and closes it, so use it only while the
/// library is at rest: closing any descriptor of the file drops the process's lock.
class Database {
 public:
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
  [[nodiscard]] Bytes file() const;

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
};

}  // namespace kit

#endif
