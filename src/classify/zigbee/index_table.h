// The index table of a ZigBee device while classification fills it.
#ifndef TEMBRA_CLASSIFY_ZIGBEE_INDEX_TABLE_H
#define TEMBRA_CLASSIFY_ZIGBEE_INDEX_TABLE_H

#include <tembra/records.h>

#include <cstddef>

namespace tembra {

/// Entries 1 to 29 have room; the end mark of a full table lands on the first byte of the device name behind it, which
/// naming overwrites later. What has no room is dropped.
class ZbIndexTable {
 public:
  static constexpr std::size_t kLast = sizeof(ZbDeviceInfo::indexes) / sizeof(ZbIndexEntry);

  explicit ZbIndexTable(ZbDeviceInfo& device) : bytes_(reinterpret_cast<unsigned char*>(&device) + kStart) {}

  /// The next entry to write, from 1 to kLast + 1.
  [[nodiscard]] std::size_t slot() const { return slot_; }

  /// Adds an entry that keeps the endpoint byte it finds.
  void addType(unsigned char type) {
    if (slot_ <= kLast) bytes_[2 * slot_++] = type;
  }

  void add(unsigned char type, unsigned short endpoint) {
    setEndpoint(slot_, endpoint);
    addType(type);
  }

  void setEndpoint(std::size_t entry, unsigned short endpoint) {
    if (entry <= kLast) bytes_[2 * entry + 1] = static_cast<unsigned char>(endpoint);
  }

  /// Type byte of an entry, 0 to kLast; entry 0's is the record's number of entries [sic].
  [[nodiscard]] unsigned char typeAt(std::size_t entry) const { return bytes_[2 * entry]; }

  void end() { bytes_[2 * slot_] = kEnd; }

 private:
  static constexpr unsigned char kEnd = 255;
  static constexpr std::size_t kStart = offsetof(ZbDeviceInfo, indexCount);

  unsigned char* bytes_;
  std::size_t slot_ = 1;
};

}  // namespace tembra

#endif
