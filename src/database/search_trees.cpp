#include "database/search_trees.h"

#include "database/offset_set.h"

namespace tembra {
namespace {

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

// Whether following all links from here soon comes to an end: found out without memory, and so even in the largest
// homes.
bool isSmallTree(DepotFile& file, int root) {
  constexpr std::size_t kMostLinks = 512;
  int links[kMostLinks + 1] = {root};
  std::size_t count = 1;
  DepotRecord record{};
  for (std::size_t followed = 0; count > 0; ++followed) {
    if (followed == kMostLinks) return false;
    const int link = links[--count];
    if (link <= 0 || !file.read(link, record) || !record.isReadable()) continue;
    links[count++] = record.left;
    links[count++] = record.right;
  }
  return true;
}

}  // namespace

bool searchesEndInBucket(DepotFile& file, long long bucketOffset) {
  int root = 0;
  if (!file.read(bucketOffset, root) || isSmallTree(file, root)) return true;
  CycleSearch search(file);
  return !search.canRun() || search.follow(root);
}

bool searchesEnd(DepotFile& file, const DepotHeader& header) {
  CycleSearch search(file);
  return !search.canRun() || forEachRoot(file, header, [&](int root) { return search.follow(root); });
}

}  // namespace tembra
