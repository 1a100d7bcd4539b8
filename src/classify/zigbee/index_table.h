// The index table of a ZigBee device while classification fills it.
#ifndef TEMBRA_CLASSIFY_ZIGBEE_INDEX_TABLE_H
#define TEMBRA_CLASSIFY_ZIGBEE_INDEX_TABLE_H

#include <tembra/records.h>

#include <algorithm>
#include <cstddef>

namespace tembra {

/// Entries 1 to 29 have room. The end mark of a full table lands on the first byte of the device name, which naming
/// overwrites later. An entry without room is dropped.
class ZbIndexTable {
 public:
  static constexpr std::size_t kLast = sizeof(ZbDeviceInfo::indexes) / sizeof(ZbIndexEntry);

  explicit ZbIndexTable(ZbDeviceInfo& device) : bytes_(reinterpret_cast<unsigned char*>(&device) + kStart) {}

  /// The next entry to write, from 1 to kLast + 1.
  [[nodiscard]] std::size_t slot() const { return std::min(added_ + 1, kLast + 1); }

  /// Adds an entry that keeps the endpoint byte it finds.
  void addType(unsigned char type) {
    if (++added_ <= kLast) bytes_[2 * added_] = type;
  }

  void add(unsigned char type, unsigned short endpoint) {
    addType(type);
    if (added_ <= kLast) bytes_[2 * added_ + 1] = static_cast<unsigned char>(endpoint);
  }

  /// Writes the endpoint byte of the next `count` entries. Behind the table, where the record's name and location
  /// stand, the bytes are written all the same, up to the end of the record. Entries that were dropped count.
  void setEndpoints(std::size_t count, unsigned short endpoint) {
    for (std::size_t entry = added_ + 1; count-- > 0 && 2 * entry + 1 < kRoom; ++entry) {
      bytes_[2 * entry + 1] = static_cast<unsigned char>(endpoint);
    }
  }

  /// Type byte of an entry, 0 to kLast + 1. Entry 0's is the record's number of entries [sic], the one behind the last
  /// entry's is the first byte of the name.
  [[nodiscard]] unsigned char typeAt(std::size_t entry) const { return bytes_[2 * entry]; }

  void end() { bytes_[2 * slot()] = kEnd; }

 private:
  static constexpr unsigned char kEnd = 255;
  static constexpr std::size_t kStart = offsetof(ZbDeviceInfo, indexCount);
  static constexpr std::size_t kRoom = sizeof(ZbDeviceInfo) - kStart;

  unsigned char* bytes_;
  std::size_t added_ = 0;  // dropped entries included
};

}  // namespace tembra

#endif
