#include "database/search_trees.h"

#include "database/offset_set.h"

namespace tembra {
namespace {

/// Calls `visit(offset, record)` for every record that a walk of the file comes to.
template <typename Visit>
void forEachRecord(DepotFile& file, const DepotHeader& header, Visit visit) {
  DepotRecord record{};
  for (long long at = header.firstRecord(); file.read(at, record) && record.isReadable(); at += record.end()) {
    visit(at, record);
  }
}

/// Calls `visit(offset)` for the first record of every bucket that has any; ends early when it returns false.
template <typename Visit>
bool everyRoot(DepotFile& file, const DepotHeader& header, Visit visit) {
  int root = 0;
  for (int bucket = 0; bucket < header.buckets; ++bucket) {
    if (file.read(header.bucketOffset(bucket), root) && root != 0 && !visit(root)) return false;
  }
  return true;
}

/// Whether every link leads to a linked record, and no two to the same one: then no search meets a record twice. True
/// of every healthy file, and found out in one pass.
bool areLinksInOrder(DepotFile& file, const DepotHeader& header) {
  OffsetSet linked(file.size());
  OffsetSet targets(file.size());
  if (!linked.isThere() || !targets.isThere()) return true;
  const auto follow = [&](int target) {
    if (target < 0 || target >= file.size() || targets.has(target)) return false;
    if (target != 0) targets.add(target);
    return true;
  };
  bool inOrder = everyRoot(file, header, follow);
  forEachRecord(file, header, [&](long long offset, const DepotRecord& record) {
    if (!record.isLinked()) return;
    linked.add(offset);
    inOrder = inOrder && follow(record.left) && follow(record.right);
  });
  return inOrder && targets.isWithin(linked);
}

/// Follows every link, depth first. Slower, and exact for any file.
class CycleSearch {
 public:
  explicit CycleSearch(DepotFile& file)
      : file_(file),
        done_(file.size()),
        onPath_(file.size()),
        longestPath_(static_cast<std::size_t>(file.size()) / sizeof(DepotRecord) + 1),
        pathPages_(longestPath_ * sizeof(Step)),
        path_(pathPages_.as<Step>()) {}

  [[nodiscard]] bool canRun() const { return done_.isThere() && onPath_.isThere() && pathPages_.isThere(); }

  // False when a cycle can be got into from there.
  bool follow(int root) {
    if (isWorthATry(root)) enter(root);
    while (length_ > 0) {
      const int link = nextLink(path_[length_ - 1]);
      if (link == kNoMore) {
        leave();
      } else if (isWorthATry(link)) {
        if (onPath_.has(link) || length_ == longestPath_) return false;
        enter(link);
      }
    }
    return true;
  }

 private:
  static constexpr int kNoMore = -1;
  struct Step {
    int offset;
    int linksTaken;
  };

  int nextLink(Step& step) {
    DepotRecord record{};
    if (step.linksTaken == 2 || !file_.read(step.offset, record) || !record.isReadable()) return kNoMore;
    return step.linksTaken++ == 0 ? record.left : record.right;
  }
  [[nodiscard]] bool isWorthATry(int link) const { return link > 0 && link < file_.size() && !done_.has(link); }
  void enter(int offset) {
    onPath_.add(offset);
    path_[length_++] = {offset, 0};
  }
  void leave() {
    const int offset = path_[--length_].offset;
    onPath_.drop(offset);
    done_.add(offset);
  }

  DepotFile& file_;
  OffsetSet done_;
  OffsetSet onPath_;
  std::size_t longestPath_;
  Pages pathPages_;
  Step* path_;
  std::size_t length_ = 0;
};

}  // namespace

bool searchesEnd(DepotFile& file, const DepotHeader& header) {
  if (areLinksInOrder(file, header)) return true;
  CycleSearch search(file);
  return !search.canRun() || everyRoot(file, header, [&](int root) { return search.follow(root); });
}

}  // namespace tembra
