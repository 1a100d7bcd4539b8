#include "depot/check.h"

#include <climits>

#include "depot/open_file.h"
#include "depot/search.h"
#include "depot/walk.h"

namespace tembra::depot {
namespace {

// The Depot library computes the end of the buckets as int.
bool bucketsFit(const File& file, const Header& header) {
  return header.buckets > 0 && header.firstRecord() <= file.size();
}

// Looks for every key of the walk as the Depot library will, up to the first that it will not find.
class Searches {
 public:
  Searches(int descriptor, File& file, const Header& header)
      : file_(file), header_(header), leaping_(descriptor, File::kLittleAhead) {}

  Look look() {
    const bool ends = forEachRecord(file_, header_, [&](long long offset, const Record& record) {
      return record.isDeleted() || goesOnBehind(offset, record);
    });
    if (!ends) look_.mostKeys = keys_;
    return look_;
  }

 private:
  bool goesOnBehind(long long offset, const Record& record) {
    if (offset + record.keyEnd() > file_.size()) return false;
    const Search result = record.keySize <= kLongestKey ? searchFor(offset, record) : Search::kDangerous;
    if (result == Search::kNeverEnds) look_.safety = Safety::kUnsafe;
    if (result == Search::kDangerous) look_.mostKeys = keys_;
    ++keys_;
    return result == Search::kFinds;
  }

  Search searchFor(long long offset, const Record& record) {
    char key[kLongestKey + 1];
    key[record.keySize] = '\0';
    const auto size = static_cast<std::size_t>(record.keySize);
    return file_.read(offset + static_cast<long long>(sizeof record), key, size) ? search(leaping_, header_, key)
                                                                                 : Search::kFails;
  }

  File& file_;
  const Header& header_;
  File leaping_;
  Look look_{Safety::kSafe, INT_MAX, false};
  int keys_ = 0;
};

}  // namespace

Look lookAtWalk(int descriptor) {
  File file(descriptor);
  Header header{};
  if (!file.read(0, header)) return {};
  if (!bucketsFit(file, header)) return {Safety::kUnsafe};
  const Walk way = walk(file, header);
  if (!way.isInOrder) return Searches(descriptor, file, header).look();
  return {Safety::kSafe, way.turnsBack ? way.keys : INT_MAX, true};
}

Look lookAtKey(int descriptor, const char* key) {
  File file(descriptor, File::kLittleAhead);
  Header header{};
  if (!file.read(0, header)) return {};
  return {bucketsFit(file, header) && search(file, header, key) != Search::kNeverEnds ? Safety::kSafe
                                                                                      : Safety::kUnsafe};
}

bool hasItsBuckets(int descriptor) {
  File file(descriptor, File::kLittleAhead);
  Header header{};
  return file.read(0, header) && bucketsFit(file, header);
}

bool lacksItsBuckets(const char* path) {
  const OpenFile file(path, O_RDONLY);
  return file.isOpen() && !hasItsBuckets(file.descriptor());
}

}  // namespace tembra::depot
