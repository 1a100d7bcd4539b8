#include "database/device_database.h"

#include <fcntl.h>
#include <tembra/globals.h>
#include <tembra/service.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <mutex>

#include "depot/keys.h"
#include "depot/ownership.h"
#include "depot/repair.h"
#include "depot/search.h"
#include "depot/temporary_name.h"
#include "support/log.h"
#include "support/strict_mode.h"
#include "support/text.h"

char DBName[10] = "/tmp/ddb";

namespace tembra {
namespace {

constexpr int kOpenMode = DP_OWRITER | DP_OCREAT;
constexpr int kReopenMode = DP_OWRITER | DP_OCREAT | DP_OSPARSE;
constexpr int kDefaultBuckets = -1;
constexpr int kReopenBuckets = 1;
constexpr int kWholeKey = -1;  // the Depot library takes the key's text length

std::atomic_uint repaired = 0;
std::atomic_uint lost = 0;

std::mutex turns;
thread_local bool inSession = false;

void complain(const char* call) {
  const int error = errno;
  std::fprintf(stderr, "%s: %s\n", call, dperrmsg(dpecode));
  errno = error;
}

// An open or a repair that failed because one of these ran out says nothing about the file, which is not deleted.
// EOVERFLOW: its size or its time does not fit into what was asked for it.
bool isShortage(int error) {
  static constexpr int kShortages[] = {EMFILE, ENFILE, ENOMEM, ENOLCK, EDEADLK, ENOSPC, EDQUOT, EOVERFLOW};
  return std::find(std::begin(kShortages), std::end(kShortages), error) != std::end(kShortages);
}

void complainOfOthers() {
  std::fprintf(stderr, TEMBRA_LOG_PREFIX "strict mode: %s is left alone, since another user owns or may write it\n",
               DBName);
}

enum class Repair {
  kDone,
  kFailed,   // the file had its chance
  kNotToday  // it failed, or was not begun, through no fault of the file
};

Repair tryRepair() {
  using depot::Outlook;
  if (depot::isForeignLink(DBName)) return Repair::kFailed;
  const depot::Preparation preparation(DBName, isStrict());
  const Outlook outlook = preparation.outlook();
  if (outlook == Outlook::kRefused) return Repair::kFailed;
  if (outlook == Outlook::kNotNow || (outlook == Outlook::kNotOpen && isShortage(errno))) return Repair::kNotToday;
  const depot::TemporaryName temporary(DBName);
  if (!temporary.take()) return Repair::kNotToday;
  errno = 0;
  if (dprepair(DBName) != 0) return Repair::kDone;
  const int error = errno;
  temporary.drop();
  return isShortage(error) ? Repair::kNotToday : Repair::kFailed;
}

// What the Depot library hands out belongs to the caller.
using DepotBuffer = std::unique_ptr<char, decltype(&std::free)>;

DepotBuffer readValue(DEPOT* depot, const char* key, std::size_t most, std::size_t& size) {
  int stored = 0;
  DepotBuffer value(dpget(depot, key, kWholeKey, 0, static_cast<int>(most), &stored), &std::free);
  size = static_cast<std::size_t>(std::max(stored, 0));
  return value;
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
  const Opening opening = open(kOpenMode, kDefaultBuckets, onlyKey);
  if (opening == Opening::kFileIsOthers) {
    complainOfOthers();
  } else if (opening != Opening::kDone) {
    complain("dpopen");
  }
  if (opening == Opening::kFileIsBad) repairOrDelete(onlyKey);
  if (depot_ != nullptr) fcntl(dpfdesc(depot_), F_SETFD, FD_CLOEXEC);
}

// Another user's link and a file whose damage the Depot library would not survive count as files that do not open.
OpenDatabase::Opening OpenDatabase::open(int mode, int buckets, const char* onlyKey) {
  if (isStrict() && depot::isOthers(DBName)) return Opening::kFileIsOthers;
  if (depot::isForeignLink(DBName)) {
    dpecode = DP_EOPEN;
    return Opening::kFileIsBad;
  }
  errno = 0;
  DEPOT* const depot = dpopen(DBName, mode, buckets);
  if (depot == nullptr) {
    const bool isFilesFault = !isShortage(errno) || (errno == ENOMEM && depot::lacksItsBuckets(DBName));
    return isFilesFault ? Opening::kFileIsBad : Opening::kFileIsNotToBlame;
  }
  if (isStrict() && depot::isOthers(dpfdesc(depot))) {  // it came after the first look
    dpclose(depot);
    return Opening::kFileIsOthers;
  }
  look_ = onlyKey == nullptr ? depot::lookAtWalk(dpfdesc(depot)) : depot::lookAtKey(dpfdesc(depot), onlyKey);
  if (look_.safety == depot::Safety::kSafe) {
    depot_ = depot;
    return Opening::kDone;
  }
  dpclose(depot);
  const bool isUnsafe = look_.safety == depot::Safety::kUnsafe;
  dpecode = isUnsafe ? DP_EBROKEN : DP_ESTAT;
  return isUnsafe ? Opening::kFileIsBad : Opening::kFileIsNotToBlame;
}

// Readable records may be left even when the repair fails.
void OpenDatabase::repairOrDelete(const char* onlyKey) {
  const Repair repair = tryRepair();
  const Opening opening = open(kReopenMode, kReopenBuckets, onlyKey);
  if (opening == Opening::kFileIsOthers) complainOfOthers();
  if (opening == Opening::kDone && repair == Repair::kDone) ++repaired;
  if (opening == Opening::kFileIsBad && repair != Repair::kNotToday) deletionResult_ = std::remove(DBName);
  if (deletionResult_ == 0) ++lost;
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

// In a file whose links are not in order, the search for a key that the walk has not met may never end. Then there is
// no value.
bool DatabaseSession::readIndexValue(const char* key, char (&out)[sizeof(IndexRecord::value) + 1]) {
  if (!look().everySearchEnds && depot::lookAtKey(dpfdesc(depot()), key).safety != depot::Safety::kSafe) return false;
  std::size_t size = 0;
  const DepotBuffer stored = readValue(depot(), key, sizeof(IndexRecord), size);
  if (stored == nullptr) return false;
  IndexRecord record{};
  std::memcpy(&record, stored.get(), std::min(size, sizeof record));
  copyText(out, record.value);
  return true;
}

DatabaseSession::DeviceWalk::DeviceWalk(DEPOT* depot, int mostKeys) : depot_(depot), keysLeft_(mostKeys) {
  if (dpiterinit(depot) == 0) complain("dpiterinit");
}

// Every key's value is read, also of keys that are no devices: one that cannot be read ends the walk.
const StoredDevice* DatabaseSession::DeviceWalk::next() {
  while (keysLeft_-- > 0) {
    const DepotBuffer key(dpiternext(depot_, nullptr), &std::free);
    if (key == nullptr) return nullptr;
    std::size_t size = 0;
    const DepotBuffer value = readValue(depot_, key.get(), sizeof(DeviceRecord), size);
    if (value == nullptr) return nullptr;
    if (!depot::isDeviceKey(key.get())) continue;
    device_ = StoredDevice(value.get(), size);
    return &device_;
  }
  return nullptr;
}

}  // namespace tembra

// Without the turn, which a session of this process may hold for as long as another process writes.
int tembra_read_database_history(struct tembra_database_history* history) {
  if (history->size < sizeof *history) return EINVAL;
  history->repaired = tembra::repaired;
  history->lost = tembra::lost;
  return 0;
}
