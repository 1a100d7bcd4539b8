#include "depot/repair.h"

#include <depot.h>
#include <strings.h>
#include <sys/statvfs.h>

#include <cerrno>
#include <climits>

#include "depot/file.h"
#include "depot/ownership.h"

namespace tembra::depot {
namespace {

constexpr int kFewestBuckets = 8191;

/// What the repair will put into the new file.
struct Salvage {
  int records = 0;
  long long bytes = 0;
  bool ends = true;

  [[nodiscard]] long long fileSize() const {
    const auto buckets = static_cast<long long>(dpprimenum(std::max(2 * records, kFewestBuckets)));
    return static_cast<long long>(sizeof(Header)) + buckets * static_cast<long long>(sizeof(int)) + bytes;
  }
};

void take(Salvage& salvage, const File& file, long long offset, const Record& record) {
  if (record.isDeleted() || std::min(record.keySize, record.valueSize) < 0) return;
  const long long end = record.keyEnd() + record.valueSize;
  if (offset + end > file.size()) return;
  ++salvage.records;
  salvage.bytes += end;
}

// The repair's own walk: it takes any record for readable, and stays for ever at one that seems to have no length.
Salvage salvageOf(File& file, const Header& header) {
  Salvage salvage;
  Record record{};
  for (long long at = static_cast<int>(header.firstRecord()); file.read(at, record);) {
    take(salvage, file, at, record);
    const auto length = static_cast<int>(record.end());
    salvage.ends = length != 0;
    if (length <= 0 || at + length > INT_MAX) break;
    at += length;
  }
  return salvage;
}

long long blocksFor(long long bytes, long long blockSize) { return (bytes + blockSize - 1) / blockSize; }

// The repair writes a new file beside the old one, cuts the old one to nothing, and copies the new one over it. A file
// system that reports no blocks has no limit.
bool hasRoom(int descriptor, long long size) {
  constexpr long long kStatBlock = 512;
  struct statvfs system = {};
  struct stat file = {};
  if (fstatvfs(descriptor, &system) != 0 || system.f_blocks == 0 || fstat(descriptor, &file) != 0) return true;
  const auto block = static_cast<long long>(system.f_frsize);
  const long long needed = blocksFor(size, block), freed = file.st_blocks * kStatBlock / block;
  return static_cast<long long>(system.f_bavail) >= std::max(needed, 2 * needed - freed);
}

bool lock(int descriptor) {
  struct flock whole = {};
  whole.l_type = F_WRLCK;
  whole.l_whence = SEEK_SET;
  int result = 0;
  do result = fcntl(descriptor, F_SETLKW, &whole);
  while (result != 0 && errno == EINTR);
  return result == 0;
}

bool writeRecords(int descriptor, int records) {
  constexpr auto kSize = static_cast<ssize_t>(sizeof records);
  return pwrite(descriptor, &records, sizeof records, offsetof(Header, records)) == kSize;
}

// The mark of either byte order.
bool hasMark(const Header& header) {
  static constexpr char kMark[] = "[depot]\n\f";
  return strncasecmp(header.magic, kMark, sizeof kMark - 1) == 0;
}

// A file with a second name is one that somebody needs elsewhere. A file without the Depot library's mark may be any
// file, so only its owner repairs it.
bool mayRepair(const struct stat& status, const Header& header) {
  return status.st_nlink == 1 && (status.st_uid == geteuid() || hasMark(header));
}

}  // namespace

Preparation::Preparation(const char* path, bool leavesOthersAlone)
    : file_(path, O_RDWR), outlook_(file_.isOpen() ? prepare(leavesOthersAlone) : Outlook::kNotOpen) {}

Outlook Preparation::prepare(bool leavesOthersAlone) {
  const int descriptor = file_.descriptor();
  struct stat status = {};
  if (fstat(descriptor, &status) != 0) return Outlook::kNotNow;
  if (leavesOthersAlone && isOthers(descriptor)) return Outlook::kNotNow;
  const bool hasHeader = S_ISREG(status.st_mode) && status.st_size >= static_cast<off_t>(sizeof(Header));
  if (!hasHeader) return Outlook::kFine;
  Header header{};
  if (!lock(descriptor)) return Outlook::kNotNow;
  File file(descriptor);
  if (!file.read(0, header)) return Outlook::kNotNow;
  const Salvage salvage = salvageOf(file, header);
  if (!salvage.ends || !mayRepair(status, header)) return Outlook::kRefused;
  if (!hasRoom(descriptor, salvage.fileSize()) || !writeRecords(descriptor, salvage.records)) return Outlook::kNotNow;
  return Outlook::kFine;
}

}  // namespace tembra::depot
