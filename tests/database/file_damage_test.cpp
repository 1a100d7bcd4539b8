// Thousands of random damages of a real file, each through every reader: no crash, no hang, no huge file, no huge
// memory, and afterwards a database that the HA server can go on with. Where the plain sequence of Depot calls comes to
// an end on such a file, the library tells the same and leaves the same behind.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <optional>
#include <random>
#include <sstream>
#include <string>
#include <system_error>

#include "database/depot_words.h"
#include "house.h"
#include "peak_memory.h"
#include "plain_calls.h"

using depot::Words;
using kit::Bytes;
using kit::Router;

namespace {

constexpr unsigned kLongestSeconds = 10;
constexpr std::uintmax_t kLargestGrowth = 3 << 19;

// A sanitizer spends a tenth of a second on each gigabyte that the Depot library asks for.
int roundsOfDamage() {
  const char* text = std::getenv("TEMBRA_DAMAGES");
  if (text != nullptr) return std::atoi(text);
  return isSanitized() ? 40 : 100;
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

constexpr unsigned char kNode = 5;
constexpr unsigned short kAddress = 0x1234;
constexpr int kIdBefore = 5;

/// The same reader twice: the library's, and the plain calls.
struct Reader {
  const char* name;
  std::string (*library)(Router&);
  std::string (*plain)();
};

// The devices that the library found, in their order, and the last of them.
std::string found(Router& router) {
  std::istringstream trace(router.takeTrace());
  std::string told;
  for (std::string line; std::getline(trace, line);) {
    const std::size_t at = line.find("Removing Zwave device ");
    if (at != std::string::npos) told += "match " + line.substr(at + 22) + "\n";
    if (line.find("Removing zigbee device ") != std::string::npos) told += "match 0\n";
  }
  return told + router.assoc().removedName + " " + std::to_string(router.assoc().removedId);
}

const Reader kReaders[] = {
    {"known node",
     [](Router& router) {
       const int result = router.assoc().ZW_checkNodeExists();
       return std::to_string(result) + " " + found(router);
     },
     [] { return plain::knownNode(kNode); }},
    {"removal",
     [](Router& router) {
       const int result = router.assoc().ZW_removeNode();
       return std::to_string(result) + " " + found(router);
     },
     [] { return plain::removal(kNode); }},
    {"ZigBee removal",
     [](Router& router) {
       const int result = router.assoc().zb_removeNode(kAddress);
       return std::to_string(result) + " " + found(router);
     },
     [] { return plain::zigbeeRemoval(kAddress); }},
    {"next id", [](Router& router) { return std::to_string(router.assoc().calculateDevId()); },
     [] { return plain::nextId(kIdBefore); }},
    {"bridge list",
     [](Router& router) {
       char* const list = router.assoc().Hue_getBridgeList();
       std::string text = list == nullptr ? "null" : list;
       std::free(list);
       return text;
     },
     [] { return plain::bridgeList(); }},
};

/// What a reader told, and the file that it left.
struct Outcome {
  std::string told;
  std::optional<Bytes> file;
};

std::optional<Bytes> fileLeft(Router& router) {
  return router.database().exists() ? std::optional(router.database().file()) : std::nullopt;
}

void prepare(Router& router, const Bytes& damaged) {
  std::error_code notThere;
  std::filesystem::remove("/tmp/ddb.dptmp", notThere);  // of a child that was ended in its repair
  router.database().remove();
  router.database().replaceWith(damaged);
  std::strcpy(router.assoc().removedName, "nobody");
  router.assoc().removedId = 0;
  DevId = kIdBefore;
  std::memset(username1, 0, sizeof username1);  // a bridge without a user gets what the list before had there
}

// A reader mends what it opens, so that each gets the damaged file itself.
Outcome byLibrary(const Reader& reader, Router& router, const Bytes& damaged) {
  prepare(router, damaged);
  alarm(kLongestSeconds);
  std::string told = reader.library(router);
  alarm(0);
  router.forget();
  return {std::move(told), fileLeft(router)};
}

std::optional<Outcome> byPlainCalls(const Reader& reader, Router& router, const Bytes& damaged) {
  prepare(router, damaged);
  const auto told = plain::inChild(reader.plain);
  return told ? std::optional(Outcome{*told, fileLeft(router)}) : std::nullopt;
}

// The plain repair asks for buckets for as many records as the header claims. Where the machine does not give them, it
// fails, and the file is deleted; the library's repair asks for those that there are.
bool claimsTooManyRecords(const Bytes& file) {
  int records = 0;
  if (file.size() < depot::kFirstBucket) return false;
  std::memcpy(&records, file.data() + depot::kRecords, sizeof records);
  return records > static_cast<int>(file.size() / depot::kRecordHeader);
}

/// Compares what the two of them did to one file after the other.
class Comparison {
 public:
  explicit Comparison(Router& router) : router_(router) {
    for (const std::string& key : router.database().keys()) keys_ += key + "\n";
  }

  void compare(const Bytes& damaged, const std::optional<Outcome>& plain, const Outcome& library) {
    const bool isSpared = plain && !plain->file && library.file && claimsTooManyRecords(damaged);
    ++(!plain ? endless_ : isSpared ? spared_ : compared_);
    if (!plain || isSpared) return;
    EXPECT_EQ(library.told, plain->told);
    EXPECT_EQ(library.file.has_value(), plain->file.has_value());
    if (!library.file || !plain->file || *library.file == *plain->file) return;
    if (const auto values = valuesOf(*plain->file)) {
      EXPECT_EQ(valuesOf(*library.file), values);
    }
  }

  [[nodiscard]] int compared() const { return compared_; }
  [[nodiscard]] int endless() const { return endless_; }
  [[nodiscard]] int spared() const { return spared_; }

 private:
  std::optional<std::string> valuesOf(const Bytes& file) {
    router_.database().remove();
    router_.database().replaceWith(file);
    return plain::inChild([this] { return plain::valuesOf(keys_); });
  }

  Router& router_;
  std::string keys_;
  int compared_ = 0;
  int endless_ = 0;
  int spared_ = 0;
};

void fillWithAllRadios(Router& router) {
  kit::Database& database = router.database();
  house::fill(database);
  for (int id = 50; id < 54; ++id) {
    database.put(kit::Device(id, "Hue lamp").ip().type("HueLamp"));
    database.index(id, 1, "00178" + std::to_string(id) + "fffe123456").index(id, 9, "user " + std::to_string(id));
    database.put(kit::Device(id + 10, "Sensor").zigbee(id == 52 ? kAddress : static_cast<unsigned>(id)));
  }
}

}  // namespace

TEST(DamagedFile, IsNoHarmToAnyReaderAndReadAsByPlainCalls) {
  Router router;
  fillWithAllRadios(router);
  const Bytes healthy = router.database().file();
  router.assoc().zwNodeRx.nodeId = kNode;
  Comparison comparison(router);
  const PeakMemory peak;
  Vandal vandal;
  std::uintmax_t largest = 0;
  for (int round = 0; round < roundsOfDamage() && largest < healthy.size() + kLargestGrowth; ++round) {
    const Bytes damaged = vandal.damage(healthy);
    for (const Reader& reader : kReaders) {
      SCOPED_TRACE("damage " + std::to_string(round) + " before " + reader.name);
      const auto plain = byPlainCalls(reader, router, damaged);
      const Outcome library = byLibrary(reader, router, damaged);
      if (library.file) largest = std::max<std::uintmax_t>(largest, library.file->size());
      EXPECT_LT(largest, healthy.size() + kLargestGrowth);
      comparison.compare(damaged, plain, library);
    }
  }
  std::printf(
      "%d compared, %d that the plain calls did not survive, %d files that they deleted for the number of records"
      "; largest file %ju bytes, peak memory +%ld KiB\n",
      comparison.compared(), comparison.endless(), comparison.spared(), largest, peak.growth());
  peak.expectFlat();
  router.database().remove();
  house::fill(router.database());
  EXPECT_EQ(house::countFound(router), house::kDevices) << "the readers are none the worse for it";
}
