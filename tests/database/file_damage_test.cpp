// Thousands of random damages of a real file, each through every reader: no crash, no hang, no huge file, no huge
// memory, and afterwards a database that the HA server can go on with.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <string>

#include "database/depot_words.h"
#include "house.h"
#include "peak_memory.h"
#include "readers.h"

using depot::Words;
using kit::Bytes;
using kit::Router;

namespace {

constexpr unsigned kLongestSeconds = 10;
constexpr std::uintmax_t kLargestGrowth = 3 << 19;

// A sanitizer spends a tenth of a second on each gigabyte that the Depot library asks for.
int damages() {
  const char* text = std::getenv("TEMBRA_DAMAGES");
  if (text != nullptr) return std::atoi(text);
  return isSanitized() ? 40 : 200;
}

/// Draws one damage after the other, the same ones in every run.
class Vandal {
 public:
  Bytes damage(const Bytes& healthy) {
    Words words(healthy);
    for (int times = 1 + number(3); times > 0; --times) damageOnce(words);
    Bytes file = words.file();
    if (number(10) == 0) file.resize(static_cast<std::size_t>(number(static_cast<int>(file.size()))));
    if (number(20) == 0) file.resize(file.size() + static_cast<std::size_t>(number(5000)), 'x');
    return file;
  }

 private:
  int number(int below) { return static_cast<int>(dice_() % static_cast<unsigned>(below)); }

  int word(const Words& words) {
    switch (number(7)) {
      case 0:
        return INT_MAX - number(30000);
      case 1:
        return -number(3000);
      case 2:
        return number(static_cast<int>(words.file().size()));
      case 3:
        return words.offsetOf(static_cast<std::size_t>(number(static_cast<int>(words.records()))));
      case 4:
        return (1 << 30) + number(400) - 200;
      case 5:
        return 0;
      default:
        return static_cast<int>(dice_());
    }
  }

  void damageOnce(Words& words) {
    const auto anyRecord = static_cast<std::size_t>(number(static_cast<int>(words.records())));
    switch (number(4)) {
      case 0:
        return words.set(4 * static_cast<std::size_t>(number(12)), word(words));  // the header
      case 1:
        return words.set(depot::kFirstBucket + 4 * static_cast<std::size_t>(number(words.buckets())), word(words));
      case 2:
        return words.setIn(anyRecord, 4 * static_cast<std::size_t>(number(7)), word(words));
      default: {
        const auto at = static_cast<std::size_t>(number(static_cast<int>(words.file().size() - 4)));
        return words.set(at, words.get(at) ^ (1 << number(32)));  // a bit
      }
    }
  }

  std::minstd_rand dice_;
};

// A reader mends what it opens, so that each gets the damaged file itself. How long the file is then.
std::uintmax_t sizeBehind(const house::Reader& reader, Router& router, const Bytes& damaged) {
  router.database().remove();
  router.database().replaceWith(damaged);
  alarm(kLongestSeconds);
  reader.read(router.assoc());
  alarm(0);
  router.forget();
  std::error_code gone;
  const std::uintmax_t size = std::filesystem::file_size("/tmp/ddb", gone);
  return gone ? 0 : size;
}

}  // namespace

TEST(DamagedFile, IsNoHarmToAnyReader) {
  Router router;
  house::fill(router.database());
  const Bytes healthy = router.database().file();
  router.assoc().zwNodeRx.nodeId = 5;
  const PeakMemory peak;
  Vandal vandal;
  std::uintmax_t largest = 0;
  for (int round = 0; round < damages() && largest < healthy.size() + kLargestGrowth; ++round) {
    const Bytes damaged = vandal.damage(healthy);
    for (const house::Reader& reader : house::kReaders) {
      SCOPED_TRACE("damage " + std::to_string(round) + " before " + reader.name);
      largest = std::max(largest, sizeBehind(reader, router, damaged));
      EXPECT_LT(largest, healthy.size() + kLargestGrowth);
    }
  }
  std::printf("largest file: %ju bytes, peak of memory grown by %ld KiB\n", largest, peak.growth());
  peak.expectFlat();
  router.database().remove();
  house::fill(router.database());
  EXPECT_EQ(house::countFound(router), house::kDevices) << "the readers are none the worse for it";
}
