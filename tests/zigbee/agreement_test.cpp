// Every pair and every triple of clusters in every order, in many circumstances, against the oracle.
#include "agreement.h"

#include <gtest/gtest.h>

#include <cstring>

#include "kit/sanitized.h"
#include "oracle/zigbee_reading.h"

using kit::Router;

namespace {

// Those with a rule, the two that a zone looks out for, and one that nobody knows.
constexpr unsigned short kClusters[] = {0x0006, 0x0008, 0x0100, 0x0101, 0x0102, 0x0200, 0x0201,
                                        0x0202, 0x0300, 0x0400, 0x0402, 0x0403, 0x0404, 0x0405,
                                        0x0406, 0x0500, 0x0702, 0x0B04, 0x0503, 0x0504, 0x0020};

// What the bytes that nobody has written yet hold.
enum Background { kZeros, kNoise, kIlluminanceEverywhere };

// What decides beside the clusters: the zone type, the model, the maker, what is measured, the type that was received.
struct Circumstances {
  const char* maker = "";
  const char* model = "";
  unsigned short zone = 0xABCD;
  unsigned char preset = 0;
  unsigned short checks[3] = {0, 0, 0};
  unsigned short words[2] = {0, 0};
  Background background = kZeros;
  int id = 17;
};

constexpr Circumstances kZones[] = {
    {},
    {.background = kNoise},
    {.zone = 0x0000, .background = kNoise},
    {.zone = 0x000D, .id = -1},
    {.zone = 0x0015},
    {.zone = 0x0028, .id = 2147483647},
    {.zone = 0x002A},
    {.zone = 0x002B},
    {.zone = 0x002C},
    {.zone = 0x002D},
    {.zone = 0x010F},
    {.zone = 0x0115},
    {.zone = 0x021D},
    {.zone = 0x0225},
};

constexpr Circumstances kModels[] = {
    {.model = "XE01S", .zone = 0x0015},
    {.model = "XE01S", .zone = 0x000D},
    {.model = "MiniSD", .zone = 0x0028},
    {.model = "xMiniSDx", .zone = 0x000D, .background = kNoise},
    {.model = "MiniSD SZ-PIR04N", .zone = 0x000D, .background = kIlluminanceEverywhere},
    {.model = "SZ-PIR04N", .zone = 0x000D},
    {.model = "SZ-PIR04N", .zone = 0x000D, .background = kIlluminanceEverywhere},
    {.model = "SZ-PIR04N", .zone = 0x0015, .background = kNoise},
    {.model = "RC_ACE", .zone = 0x010F},
    {.model = "RC_ACE", .zone = 0x0115},
    {.model = "SML001", .zone = 0x000D},
    {.model = "SML001", .preset = 24},
    {.model = "ESW", .checks = {1, 1, 0}},
    {.model = "ESW"},
};

constexpr Circumstances kMakers[] = {
    {.maker = "Dravotek Ltd.", .zone = 0x0115},
    {.maker = "by Dravotek Ltd. EU", .zone = 0x0115},
    {.maker = "NYCE", .model = "3014", .zone = 0x0015},
    {.maker = "NYCE", .model = "3014", .zone = 0x002A},
    {.maker = "NYCE Control", .model = "3014", .zone = 0x0015},
    {.maker = "NYCE", .model = "NCZ-3041-HA", .zone = 0x000D},
    {.maker = "NYCE", .model = "3041 SML0 ESW", .zone = 0x000D, .background = kNoise},
    {.maker = "nyce", .model = "3041"},
    {.maker = "NYCE", .model = "3041 3014 MiniSD", .zone = 0x0015},
    {.maker = "Zen Within"},
    {.maker = "Zen Within", .model = "UPIC", .background = kNoise},
    {.maker = "Zen Within Inc", .model = "UPIC"},
    {.maker = "Zen Within ", .model = "upic"},
};

constexpr Circumstances kMetersAndReceivedTypes[] = {
    {.checks = {1, 0, 0}},
    {.checks = {1, 1, 0}},
    {.checks = {0x100, 0, 0x100}, .background = kNoise},
    {.checks = {0, 1, 1}},
    {.maker = "Dravotek Ltd.", .words = {0x1002, 0x5EC0}},
    {.maker = "Dravotek Ltd.", .checks = {1, 1, 1}, .words = {0x1002, 0x5EC1}},
    {.maker = "Dravotek Ltd.", .checks = {1, 1, 1}, .words = {0x1003, 0x5EC0}},
    {.maker = "Dravotek Ltd. ", .words = {0x1002, 0x5EC0}, .background = kNoise},
    {.maker = "OSRAM"},
    {.maker = "OSRAM", .checks = {1, 1, 1}, .words = {0x1002, 0x5EC0}, .background = kNoise},
    {.maker = "OSRAM GmbH"},
    {.preset = 1},
    {.preset = 4},
    {.zone = 0x000D, .preset = 24},
    {.preset = 43, .checks = {1, 1, 1}},
    {.zone = 0x0015, .preset = 255},
};

constexpr unsigned char kIlluminance = 28;

void paint(ZbDeviceInfo& device, Background background) {
  auto* bytes = reinterpret_cast<unsigned char*>(&device);
  for (unsigned at = 0; background == kNoise && at < sizeof device; ++at) {
    bytes[at] = static_cast<unsigned char>(at * 37 + 11);
  }
  if (background != kIlluminanceEverywhere) return;
  std::memset(device.indexes, kIlluminance, sizeof device.indexes);
  device.indexCount = kIlluminance;
}

// A text as a server writes it into a field of which only the text matters.
template <std::size_t Size>
void write(char (&field)[Size], const char* text) {
  std::memcpy(field, text, std::strlen(text) + 1);
}

ZbDeviceInfo deviceIn(const Circumstances& all) {
  ZbDeviceInfo device{};
  paint(device, all.background);
  write(device.manufacturer, all.maker);
  write(device.model, all.model);
  device.zoneType = all.zone;
  device.devType = all.preset;
  device.acCheckA = all.checks[0];
  device.acCheckB = all.checks[1];
  device.acCheckC = all.checks[2];
  device.productWordA = all.words[0];
  device.productWordB = all.words[1];
  return device;
}

// Entry i is on endpoint i + 1, with a high byte on the third.
void place(ZbDeviceInfo& device, std::size_t at, unsigned short cluster) {
  constexpr unsigned short endpoints[] = {1, 2, 0x0203};
  device.clusters[at] = {cluster, endpoints[at]};
  device.clusters[at + 1] = {0xFFFF, 2};
}

void checkTriples(Agreement& agreement, ZbDeviceInfo device, int id, int& met) {
  for (const unsigned short third : kClusters) {
    place(device, 2, third);
    if (++met % kit::kOneIn == 0) agreement.check(device, id);
  }
}

void checkPairs(Agreement& agreement, ZbDeviceInfo device, int id, int& triples) {
  for (const unsigned short second : kClusters) {
    place(device, 1, second);
    agreement.check(device, id);
    checkTriples(agreement, device, id, triples);
  }
}

template <std::size_t Size>
void checkEveryPairAndTriple(const Circumstances (&circumstances)[Size]) {
  Router router;
  Agreement agreement(router);
  int triples = 0;
  for (const Circumstances& all : circumstances) {
    ZbDeviceInfo device = deviceIn(all);
    for (const unsigned short first : kClusters) {
      place(device, 0, first);
      agreement.check(device, all.id);
      checkPairs(agreement, device, all.id, triples);
    }
  }
  agreement.expectNothingElseTouched();
  static_assert(std::size(kClusters) == 18 + 3);
  EXPECT_EQ(triples, static_cast<int>(Size) * 21 * 21 * 21);
  EXPECT_EQ(agreement.checked(), static_cast<int>(Size) * (21 + 21 * 21) + triples / kit::kOneIn);
}

}  // namespace

TEST(EveryPairAndTripleTest, OfZones) { checkEveryPairAndTriple(kZones); }
TEST(EveryPairAndTripleTest, OfModels) { checkEveryPairAndTriple(kModels); }
TEST(EveryPairAndTripleTest, OfMakers) { checkEveryPairAndTriple(kMakers); }
TEST(EveryPairAndTripleTest, OfMetersAndReceivedTypes) { checkEveryPairAndTriple(kMetersAndReceivedTypes); }

// Most have no rule; a rule that the list above does not know would show here.
TEST(EveryClusterTest, Alone) {
  Router router;
  Agreement agreement(router);
  ZbDeviceInfo device = deviceIn({.zone = 0x000D});
  for (unsigned cluster = 0; cluster <= 0xFFFF; ++cluster) {
    place(device, 0, static_cast<unsigned short>(cluster));
    if (cluster < 0x1000 || cluster % kit::kOneIn == 0) agreement.check(device, 17);
  }
  EXPECT_GE(agreement.checked(), 0x10000 / kit::kOneIn);
}

namespace {

void checkEveryZoneType(const Circumstances& all) {
  Router router;
  Agreement agreement(router);
  TembraAssociation& assoc = router.assoc();
  ZbDeviceInfo device = deviceIn(all);
  place(device, 0, 0x0500);
  int known = 0;
  for (unsigned zone = 0; zone <= 0xFFFF; ++zone) {
    device.zoneType = static_cast<unsigned short>(zone);
    const std::string name = assoc.GetDeviceTypeInStringFormat(device.zoneType);
    if (name != oracle::zoneName(zone, all.maker, all.model)) ADD_FAILURE() << describe(device) << " is a " << name;
    if (name != "UnknownDevice") ++known;
    if (name != "UnknownDevice" || zone % kit::kOneIn == 0) agreement.check(device, all.id);
  }
  agreement.expectNothingElseTouched();
  EXPECT_GE(agreement.checked(), 0x10000 / kit::kOneIn);
  EXPECT_EQ(known, 12);
}

}  // namespace

TEST(EveryZoneTypeTest, OfAnyDevice) { checkEveryZoneType({}); }
TEST(EveryZoneTypeTest, OfTheRemoteThatIsAKeyFob) { checkEveryZoneType({.model = "RC_ACE"}); }
TEST(EveryZoneTypeTest, OfTheButton) { checkEveryZoneType({.maker = "Dravotek Ltd."}); }
TEST(EveryZoneTypeTest, OfBoth) { checkEveryZoneType({.maker = "the Dravotek Ltd. company", .model = "RC_ACE"}); }
TEST(EveryZoneTypeTest, OfTheSmallSmokeDetector) { checkEveryZoneType({.model = "MiniSD"}); }
TEST(EveryZoneTypeTest, OfTheContactWithoutAlarm) { checkEveryZoneType({.model = "XE01S"}); }
TEST(EveryZoneTypeTest, OfTheTiltSensor) { checkEveryZoneType({.maker = "NYCE", .model = "3014"}); }
TEST(EveryZoneTypeTest, OfTheMotionSensorWithIlluminance) {
  checkEveryZoneType({.model = "SZ-PIR04N", .background = kIlluminanceEverywhere});
}
