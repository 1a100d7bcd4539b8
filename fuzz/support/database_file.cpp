#include "support/database_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "support/invariant.h"
#include "support/private_folder.h"

namespace fuzz {
namespace {

constexpr int kFewBuckets = 7;  // a small file is quickly written

class File {
 public:
  explicit File(int mode) : descriptor_(open(kDatabaseName, mode | O_RDWR | O_CLOEXEC, S_IRUSR | S_IWUSR)) {}
  ~File() {
    if (descriptor_ >= 0) ::close(descriptor_);
  }
  File(const File&) = delete;
  File& operator=(const File&) = delete;
  void write(Bytes content) const {
    if (descriptor_ < 0) return;
    require(::write(descriptor_, content.data(), content.size()) == static_cast<ssize_t>(content.size()),
            "the file takes what is written");
  }

 private:
  int descriptor_;
};

}  // namespace

DatabaseWriter::DatabaseWriter() : depot_(dpopen(kDatabaseName, DP_OWRITER | DP_OCREAT, kFewBuckets)) {}

DatabaseWriter::~DatabaseWriter() { close(); }

void DatabaseWriter::close() {
  if (depot_ != nullptr) dpclose(depot_);
  depot_ = nullptr;
}

void DatabaseWriter::put(const std::string& key, Bytes value) {
  if (depot_ == nullptr) return;
  const auto* data = value.empty() ? "" : reinterpret_cast<const char*>(value.data());
  dpput(depot_, key.data(), static_cast<int>(key.size()), data, static_cast<int>(value.size()), DP_DOVER);
}

void DatabaseWriter::drop(const std::string& key) {
  if (depot_ != nullptr) dpout(depot_, key.data(), static_cast<int>(key.size()));
}

void writeDatabaseFile(Bytes content) { File(O_CREAT | O_TRUNC).write(content); }

void cutDatabaseFile(std::size_t length) {
  if (length < databaseFileSize()) static_cast<void>(!truncate(kDatabaseName, static_cast<off_t>(length)));
}

void lengthenDatabaseFile() {
  static constexpr std::uint8_t kByteTooMany[] = {'x'};
  File(O_APPEND).write(kByteTooMany);
}

void removeDatabaseFile() { unlink(kDatabaseName); }

std::size_t databaseFileSize() {
  struct stat status {};
  return stat(kDatabaseName, &status) == 0 ? static_cast<std::size_t>(status.st_size) : 0;
}

}  // namespace fuzz
