// Read access to the HA server's device database, a Depot file that other processes write.
#ifndef TEMBRA_DATABASE_DEVICE_DATABASE_H
#define TEMBRA_DATABASE_DEVICE_DATABASE_H

#include <depot.h>
#include <tembra/association.h>
#include <tembra/records.h>

#include <cstddef>

#include "depot/check.h"
#include "support/state_lock.h"

namespace tembra {

/// One device value, copied into a zeroed record: whatever the file holds, its fields can be read.
class StoredDevice {
 public:
  StoredDevice() = default;
  StoredDevice(const char* value, std::size_t size);

  [[nodiscard]] const DeviceRecord& record() const { return record_; }

  /// Whether the value is a Z-Wave device with this node id. A value that ends before the compared fields never is.
  [[nodiscard]] bool isZwaveNode(unsigned char node) const;

  [[nodiscard]] bool isIpDevice() const { return isOfRadio(RADIO_IP); }

  /// Whether the value has this ZigBee address, whatever its radio: address 0 is every device of another radio [sic].
  [[nodiscard]] bool hasZigbeeAddress(unsigned short address) const;

 private:
  [[nodiscard]] bool isOfRadio(RadioKind kind) const;

  DeviceRecord record_{};
  std::size_t size_ = 0;
};

/// Keeps the sessions of a process apart. The file's lock is per process, so a second session of the same process would
/// break the file for everybody.
class DatabaseTurn {
 public:
  DatabaseTurn();
  ~DatabaseTurn();
  DatabaseTurn(const DatabaseTurn&) = delete;
  DatabaseTurn& operator=(const DatabaseTurn&) = delete;

  /// False on a thread that has a session already (the router's Logger may call the library back): it gets no second.
  [[nodiscard]] bool isOurs() const { return ours_; }

 private:
  bool ours_;
};

/// The database, opened for the life of the object. While a session exists, its thread does not hold the state lock.
/// Lock order: session first, state lock second. So a visitor may take a StateLock to store what it found.
class OpenDatabase {
 public:
  OpenDatabase(const OpenDatabase&) = delete;
  OpenDatabase& operator=(const OpenDatabase&) = delete;

  [[nodiscard]] bool isOpen() const { return depot_ != nullptr; }

  /// Result of deleting the file when it could not be opened, -1 when it was not deleted.
  [[nodiscard]] int deletionResult() const { return deletionResult_; }

 protected:
  /// Waits for the writer's lock, without limit. A file that does not open is repaired and opened again. A file that
  /// does not open even then is deleted, so that the HA server makes a new one. When descriptors, memory or disk space
  /// ran out, the session stays closed and the file as it is; so does a file of others in strict mode. Only what
  /// reading this key takes is looked through for damage; null: everything.
  explicit OpenDatabase(const char* onlyKey);
  ~OpenDatabase();

  [[nodiscard]] DEPOT* depot() const { return depot_; }
  [[nodiscard]] const depot::Look& look() const { return look_; }

 private:
  enum class Opening { kDone, kFileIsBad, kFileIsNotToBlame, kFileIsOthers };

  Opening open(int mode, int buckets, const char* onlyKey);
  void repairOrDelete(const char* onlyKey);

  const StateUnlocked unlocked_;
  const DatabaseTurn turn_;
  DEPOT* depot_ = nullptr;
  depot::Look look_;
  int deletionResult_ = -1;
};

/// Reads the value of one key only, whose cost does not grow with the home.
class ValueSession : public OpenDatabase {
 public:
  explicit ValueSession(const char* key) : OpenDatabase(key), key_(key) {}

  /// Reads a text of at most `size` - 1 bytes. False, with `out` untouched, when the key does not exist.
  bool readText(char* out, std::size_t size);

 private:
  const char* key_;
};

/// Goes through the devices.
class DatabaseSession : public OpenDatabase {
 public:
  DatabaseSession() : OpenDatabase(nullptr) {}

  /// Reads the value text of an index record, empty when the record ends before it. False, with `out` untouched, when
  /// the key does not exist.
  bool readIndexValue(const char* key, char (&out)[sizeof(IndexRecord::value) + 1]);

  /// Calls `visit` for every device in file order; ends early when a value cannot be read.
  template <typename Visit>
  void forEachDevice(Visit visit) {
    DeviceWalk walk(depot(), look().mostKeys);
    while (const StoredDevice* device = walk.next()) visit(*device);
  }

 private:
  class DeviceWalk {
   public:
    DeviceWalk(DEPOT* depot, int mostKeys);
    /// The next device, valid until the next call; null at the end.
    const StoredDevice* next();

   private:
    DEPOT* depot_;
    int keysLeft_;
    StoredDevice device_;
  };
};

}  // namespace tembra

#endif
