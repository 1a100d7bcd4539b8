// Thousands of random damages of a real file, through every reader: no crash, no hang, no huge file, and afterwards a
// database that the HA server can go on with.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <string>

#include "database/depot_words.h"
#include "house.h"

using depot::Words;
using harness::Bytes;
using harness::Device;
using harness::Router;

namespace {

constexpr unsigned kLongestSeconds = 10;
constexpr std::uintmax_t kLargestGrowth = 3 << 19;

int damages() {
  const char* text = std::getenv("TEMBRA_DAMAGES");
  return text == nullptr ? 500 : std::atoi(text);
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

void readEverything(Router& router) {
  TembraAssociation& assoc = router.assoc();
  house::findNode(router, 5);
  assoc.ZW_removeNode();
  assoc.zb_removeNode(0x1234);
  assoc.calculateDevId();
  std::free(assoc.Hue_getBridgeList());
}

}  // namespace

TEST(DamagedFile, IsNoHarmToAnyReader) {
  Router router;
  house::fill(router.database());
  const Bytes healthy = router.database().file();
  router.assoc();
  Vandal vandal;
  for (int round = 0; round < damages(); ++round) {
    SCOPED_TRACE("damage " + std::to_string(round));
    router.database().remove();
    router.database().replaceWith(vandal.damage(healthy));
    alarm(kLongestSeconds);
    readEverything(router);
    alarm(0);
    std::error_code none;
    const std::uintmax_t size = std::filesystem::file_size("/tmp/ddb", none);
    EXPECT_TRUE(none || size < healthy.size() + kLargestGrowth) << size;
    router.forget();
  }
  router.database().remove();
  house::fill(router.database());
  EXPECT_EQ(house::countFound(router), house::kDevices) << "the readers are none the worse for it";
}
