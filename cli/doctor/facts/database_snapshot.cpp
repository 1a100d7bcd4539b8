#include "cli/doctor/facts/database_snapshot.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <tembra/vocabulary.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>

#include "cli/words/texts.h"
#include "depot/check.h"
#include "depot/keys.h"
#include "depot/open_file.h"
#include "depot/ownership.h"
#include "depot/walk.h"

namespace tembra::cli::doctor {
namespace {

using namespace std::chrono_literals;

constexpr auto kLongestWait = 1s;
constexpr auto kBetweenTries = 20ms;
constexpr std::size_t kLongestValue = 512;  // of what the library reads
constexpr long long kMostBytes = 64 << 20;
constexpr int kMostRecords = 100'000;  // hundreds of homes

std::optional<FileLock> lockOfOthers(int descriptor) {
  struct flock lock = {};
  lock.l_type = F_RDLCK;
  lock.l_whence = SEEK_SET;
  if (fcntl(descriptor, F_GETLK, &lock) != 0 || lock.l_type == F_UNLCK) return std::nullopt;
  return FileLock{lock.l_pid, lock.l_type == F_WRLCK};
}

// The lock that the Depot library takes to read. It is gone when the file is closed.
int lockToRead(int descriptor) {
  struct flock lock = {};
  lock.l_type = F_RDLCK;
  lock.l_whence = SEEK_SET;
  return fcntl(descriptor, F_SETLK, &lock) == 0 ? 0 : errno;
}

int lockInTime(const Context& context, int descriptor, std::optional<FileLock>& others) {
  const auto until = std::chrono::steady_clock::now() + kLongestWait;
  while (true) {
    const int error = lockToRead(descriptor);
    if (error != EAGAIN && error != EACCES) return error;
    others = lockOfOthers(descriptor);
    if (std::chrono::steady_clock::now() >= until) return EAGAIN;
    context.attention.pause(kBetweenTries);
  }
}

// Zero behind the end of what is stored, which may be nothing.
template <typename Record>
Record recordIn(const std::vector<unsigned char>& value) {
  Record record{};
  std::copy_n(value.begin(), std::min(value.size(), sizeof record), reinterpret_cast<unsigned char*>(&record));
  return record;
}

std::string bytesText(long long count) { return std::to_string(count) + " bytes"; }

// What the Depot library itself refuses to open.
std::string faultOfMark(const depot::Header& header) {
  static constexpr char kMark[] = "[depot]\n\f";
  return std::memcmp(header.magic, kMark, sizeof kMark) == 0 ? "" : "it does not begin as a device database does";
}

std::string faultOfSize(const depot::File& file, const depot::Header& header) {
  if (header.fileSize == file.size()) return "";
  return "its header says " + bytesText(header.fileSize) + ", and the file has " + std::to_string(file.size());
}

class Reader {
 public:
  Reader(int descriptor, Snapshot& snapshot) : descriptor_(descriptor), file_(descriptor), snapshot_(snapshot) {}

  void read() {
    depot::Header header{};
    if (!file_.read(0, header)) return complainOfHeader("it ends within its header");
    complainOfHeader(faultOfMark(header));
    if (!depot::hasItsBuckets(descriptor_)) {
      complainOfHeader("its header claims " + std::to_string(header.buckets) + " buckets in " +
                       bytesText(file_.size()));
    }
    if (!snapshot_.damage.empty()) return;
    complainOfHeader(faultOfSize(file_, header));
    if (file_.size() > kMostBytes) {
      return complain("it has " + bytesText(file_.size()) + ", which no device list fills");
    }
    const long long end = readRecords(header);
    checkLinks();
    if (end != header.fileSize)
      complain("its records end at byte " + std::to_string(end) + " of " + std::to_string(header.fileSize));
  }

 private:
  // As far as the header says: the Depot library reads nothing behind that.
  long long readRecords(const depot::Header& header) {
    long long end = header.firstRecord();
    depot::forEachRecord(file_, header, [&](long long offset, const depot::Record& record) {
      if (offset >= header.fileSize) return false;
      end = offset + record.end();
      if (!record.isDeleted()) take(offset, record);
      return snapshot_.records < kMostRecords;
    });
    return end;
  }

  // Links that are out of order without danger the library takes as they are.
  void checkLinks() {
    const depot::Look look = depot::lookAtWalk(descriptor_);
    const depot::Look nextId = depot::lookAtKey(descriptor_, depot::kNextIdKey);
    if (look.safety == depot::Safety::kUnsafe || nextId.safety == depot::Safety::kUnsafe) {
      snapshot_.isRepairedWhenUsed = true;
    }
    if (look.safety != depot::Safety::kSafe || !look.everySearchEnds) {
      complain("the links of its records are not in order");
    }
  }

  // A file with such a header does not open.
  void complainOfHeader(const std::string& fault) {
    if (!fault.empty()) snapshot_.isRepairedWhenUsed = true;
    complain(fault);
  }

  // The first that is wrong is what the rest follows from.
  void complain(const std::string& fault) {
    if (snapshot_.damage.empty()) snapshot_.damage = fault;
  }

  void take(long long offset, const depot::Record& record) {
    ++snapshot_.records;
    std::string key(std::min<std::size_t>(static_cast<std::size_t>(record.keySize), kLongestValue), '\0');
    std::vector<unsigned char> value(std::min<std::size_t>(static_cast<std::size_t>(record.valueSize), kLongestValue));
    if (!file_.read(offset + static_cast<long long>(sizeof record), key.data(), key.size()) ||
        (!value.empty() && !file_.read(offset + record.keyEnd(), value.data(), value.size()))) {
      return complain("a record is cut off");
    }
    if (!key.empty()) snapshot_.take({key, value});  // else a record of zeros
  }

  const int descriptor_;
  depot::File file_;
  Snapshot& snapshot_;
};

int whyNoFile(int descriptor) {
  struct stat status = {};
  if (fstat(descriptor, &status) != 0) return errno;
  if (S_ISREG(status.st_mode)) return 0;
  return S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
}

}  // namespace

std::optional<HueSlots> hueSlotsOf(const StoredRecord& stored) {
  const std::string type = fieldText(stored.device.typeName);
  const std::string id = std::to_string(stored.device.id);
  if (stored.device.radioKind != RADIO_IP) return std::nullopt;
  if (type == "HueLamp") return HueSlots{id + ".1", id + ".9"};
  if (type == "MultilevelSwitchOnOff") return HueSlots{id + ".3", id + ".5"};
  return std::nullopt;
}

void Snapshot::take(const recording::DatabaseRecord& record) {
  const auto& [key, value] = contents.emplace_back(record);
  if (key == depot::kNextIdKey) {
    nextId = std::string(value.begin(), std::ranges::find(value, 0));
  } else if (depot::isDeviceKey(key)) {
    devices.push_back({key, recordIn<DeviceRecord>(value)});
  } else if (key != depot::kVersionKey) {
    values[key] = fieldText(recordIn<IndexRecord>(value).value);
  }
}

std::size_t Snapshot::numberedDevices() const {
  return static_cast<std::size_t>(std::ranges::count_if(
      devices, [](const StoredRecord& one) { return one.key.find_first_not_of("0123456789") == std::string::npos; }));
}

Snapshot readSnapshot(const Context& context, const char* path) {
  Snapshot snapshot;
  if (depot::isForeignLink(path)) {
    snapshot.error = ELOOP;
    return snapshot;
  }
  const depot::OpenFile open(path, O_RDONLY);
  snapshot.error = open.isOpen() ? whyNoFile(open.descriptor()) : errno;
  if (snapshot.error == 0) snapshot.error = lockInTime(context, open.descriptor(), snapshot.lock);
  if (snapshot.error != 0) return snapshot;
  snapshot.size = depot::File(open.descriptor()).size();
  if (snapshot.size > 0) Reader(open.descriptor(), snapshot).read();
  return snapshot;
}

}  // namespace tembra::cli::doctor
