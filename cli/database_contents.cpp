#include "database_contents.h"

#include <tembra/records.h>

#include <algorithm>
#include <optional>

#include "depot/walk.h"

namespace tembra::cli {
namespace {

constexpr int kLongestKey = 1024;
constexpr int kLongestValue = sizeof(DeviceRecord);

bool readBytes(depot::File& file, long long offset, int length, std::string& text) {
  text.resize(static_cast<std::size_t>(length));
  return file.read(offset, text.data(), text.size());
}

std::optional<StoredRecord> readStored(depot::File& file, long long offset, const depot::Record& record) {
  StoredRecord stored;
  const bool isRead =
      record.keySize <= kLongestKey &&
      readBytes(file, offset + static_cast<long long>(sizeof record), record.keySize, stored.key) &&
      readBytes(file, offset + record.keyEnd(), std::min(record.valueSize, kLongestValue), stored.value);
  return isRead ? std::optional(stored) : std::nullopt;
}

}  // namespace

DatabaseContents readContents(DEPOT* depot) {
  depot::File file(dpfdesc(depot));
  depot::Header header{};
  long long end = file.read(0, header) ? header.firstRecord() : 0;
  DatabaseContents contents{{}, depot::walk(file, header).isInOrder};
  depot::forEachRecord(file, header, [&](long long offset, const depot::Record& record) {
    end = offset + record.end();
    if (record.isDeleted()) return true;
    auto stored = readStored(file, offset, record);
    contents.areComplete = contents.areComplete && stored;
    if (stored) contents.records.push_back(std::move(*stored));
    return true;
  });
  contents.areComplete = contents.areComplete && end == file.size();
  return contents;
}

}  // namespace tembra::cli
