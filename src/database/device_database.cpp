#include "database/device_database.h"

#include <fcntl.h>
#include <tembra/globals.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <mutex>

#include "database/depot_file.h"
#include "database/file_check.h"
#include "support/text.h"

char DBName[10] = "/tmp/ddb";

namespace tembra {
namespace {

constexpr int kOpenMode = DP_OWRITER | DP_OCREAT;
constexpr int kReopenMode = DP_OWRITER | DP_OCREAT | DP_OSPARSE;
constexpr int kDefaultBuckets = -1;
constexpr int kReopenBuckets = 1;
constexpr int kWholeKey = -1;  // the Depot library takes the key's text length

constinit std::mutex turns;
thread_local bool inSession = false;

void complain(const char* call) {
  const int error = errno;
  std::fprintf(stderr, "%s: %s\n", call, dperrmsg(dpecode));
  errno = error;
}

bool isSafe(DEPOT* depot, const char* onlyKey) {
  const int descriptor = dpfdesc(depot);
  return onlyKey == nullptr ? isSafeToRead(descriptor) : isSafeToSearch(descriptor, dpinnerhash(onlyKey, kWholeKey));
}

// A file whose damage the Depot library would not survive counts as one that does not open.
DEPOT* openChecked(int mode, int buckets, const char* onlyKey) {
  errno = 0;
  DEPOT* depot = dpopen(DBName, mode, buckets);
  if (depot == nullptr || isSafe(depot, onlyKey)) return depot;
  dpclose(depot);
  errno = 0;
  dpecode = DP_EBROKEN;
  return nullptr;
}

// That an open or a repair failed for want of these says nothing about the file: it is not deleted.
bool isShortage(int error) {
  static constexpr int kShortages[] = {EMFILE, ENFILE, ENOMEM, ENOLCK, EDEADLK, ENOSPC, EDQUOT};
  return std::find(std::begin(kShortages), std::end(kShortages), error) != std::end(kShortages);
}

// A file that speaks of more buckets than it has takes all memory for them.
bool openFailedForWant() { return isShortage(errno) && !(errno == ENOMEM && lacksItsBuckets(DBName)); }

// Whether the file had its chance: false when the repair failed for a want that is not the file's own doing.
bool tryRepair() {
  const Repair outlook = foreseeRepair(DBName);
  if (outlook == Repair::NoRoom || (outlook == Repair::Unforeseen && isShortage(errno))) return false;
  errno = 0;
  if (outlook == Repair::Refused || dprepair(DBName) != 0) return true;
  return !isShortage(errno) || (errno == ENOMEM && outlook == Repair::Greedy);
}

// What the Depot library hands out belongs to the caller.
using DepotBuffer = std::unique_ptr<char, decltype(&std::free)>;

DepotBuffer readValue(DEPOT* depot, const char* key, std::size_t most, std::size_t& size) {
  int stored = 0;
  DepotBuffer value(dpget(depot, key, kWholeKey, 0, static_cast<int>(most), &stored), &std::free);
  size = static_cast<std::size_t>(std::max(stored, 0));
  return value;
}

bool isDeviceKey(const char* key) {
  return std::strchr(key, '.') == nullptr && std::strcmp(key, "NextDevid") != 0 && std::strcmp(key, "Version") != 0;
}

}  // namespace

StoredDevice::StoredDevice(const char* value, std::size_t size) : size_(std::min(size, sizeof record_)) {
  std::memcpy(&record_, value, size_);
}

bool StoredDevice::isOfRadio(RadioKind kind) const {
  constexpr std::size_t comparedEnd = offsetof(DeviceRecord, radioKind) + sizeof(DeviceRecord::radioKind);
  return size_ >= comparedEnd && record_.radioKind == kind;
}

// The low byte only: node 261 passes for node 5 [sic].
bool StoredDevice::isZwaveNode(unsigned char node) const {
  return isOfRadio(RADIO_ZWAVE) && static_cast<unsigned char>(record_.zwaveNode) == node;
}

bool StoredDevice::hasZigbeeAddress(unsigned short address) const {
  constexpr std::size_t comparedEnd = offsetof(DeviceRecord, zigbeeAddress) + sizeof(DeviceRecord::zigbeeAddress);
  return size_ >= comparedEnd && record_.zigbeeAddress == address;
}

DatabaseTurn::DatabaseTurn() : ours_(!inSession) {
  if (!ours_) return;
  turns.lock();
  inSession = true;
}

DatabaseTurn::~DatabaseTurn() {
  if (!ours_) return;
  inSession = false;
  turns.unlock();
}

OpenDatabase::OpenDatabase(const char* onlyKey) {
  if (!turn_.isOurs()) return;
  depot_ = openChecked(kOpenMode, kDefaultBuckets, onlyKey);
  if (depot_ == nullptr) repairOrDelete(onlyKey);
  if (depot_ != nullptr) fcntl(dpfdesc(depot_), F_SETFD, FD_CLOEXEC);
}

// Readable records may be left even when the repair fails.
void OpenDatabase::repairOrDelete(const char* onlyKey) {
  complain("dpopen");
  if (openFailedForWant()) return;
  const bool hadItsChance = tryRepair();
  depot_ = openChecked(kReopenMode, kReopenBuckets, onlyKey);
  if (depot_ == nullptr && hadItsChance && !openFailedForWant()) deletionResult_ = std::remove(DBName);
}

OpenDatabase::~OpenDatabase() {
  if (depot_ != nullptr && dpclose(depot_) == 0) complain("dpclose");
}

bool ValueSession::readText(char* out, std::size_t size) {
  std::size_t length = 0;
  const DepotBuffer value = readValue(depot(), key_, size - 1, length);
  if (value == nullptr) return false;
  std::memcpy(out, value.get(), length);
  out[length] = '\0';
  return true;
}

bool DatabaseSession::readIndexValue(const char* key, char (&out)[sizeof(IndexRecord::value) + 1]) {
  std::size_t size = 0;
  const DepotBuffer stored = readValue(depot(), key, sizeof(IndexRecord), size);
  if (stored == nullptr) return false;
  IndexRecord record{};
  std::memcpy(&record, stored.get(), std::min(size, sizeof record));
  copyText(out, record.value);
  return true;
}

// The walk of a damaged file may turn back; no file holds more keys than record headers fit into it.
DatabaseSession::DeviceWalk::DeviceWalk(DEPOT* depot)
    : depot_(depot), keysLeft_(dpfsiz(depot) / static_cast<int>(sizeof(DepotRecord))) {
  if (dpiterinit(depot) == 0) complain("dpiterinit");
}

// Every key's value is read, also of keys that are no devices: one that cannot be read ends the walk.
const StoredDevice* DatabaseSession::DeviceWalk::next() {
  for (; keysLeft_ > 0; --keysLeft_) {
    const DepotBuffer key(dpiternext(depot_, nullptr), &std::free);
    if (key == nullptr) return nullptr;
    std::size_t size = 0;
    const DepotBuffer value = readValue(depot_, key.get(), sizeof(DeviceRecord), size);
    if (value == nullptr) return nullptr;
    if (!isDeviceKey(key.get())) continue;
    device_ = StoredDevice(value.get(), size);
    --keysLeft_;
    return &device_;
  }
  return nullptr;
}

}  // namespace tembra
