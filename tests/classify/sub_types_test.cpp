// The types that a user may choose instead: every type, every capability, every text length.
#include <gtest/gtest.h>
#include <tembra/globals.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <string>
#include <vector>

#include "kit/router.h"

using kit::Router;

namespace {

using Types = std::vector<int>;

constexpr int kUntouched = -77;
constexpr std::size_t kIndexesAt = 973;
constexpr std::size_t kIndexBytes = sizeof(ZwNodeInfo) - kIndexesAt;

const std::map<int, Types>& listedTypes() {
  static const std::map<int, Types> lists = {
      {1, {42, 1, 43}},  {44, {42, 1, 43}},          {2, {2, 52, 55}},           {3, {39, 41, 38, 37, 49}},
      {6, {37, 49, 36}}, {10, {21, 19, 10}},         {35, {25, 40, 27, 56, 49}}, {45, {43, 45}},
      {47, {7, 46, 54}}, {59, {39, 49, 36, 37, 41}},
  };
  return lists;
}

struct Flags {
  bool basic, multilevel, binarySensor, acExtender;
};

constexpr Flags kBasicOnly{true, false, false, false};

Flags flagsOf(unsigned bits) { return {(bits & 1) != 0, (bits & 2) != 0, (bits & 4) != 0, (bits & 8) != 0}; }

void set(const Flags& flags) {
  BasicFlag = flags.basic ? 1 : 0;
  MultilevelFlag = flags.multilevel ? 1 : 0;
  SensorBinaryFlag = flags.binarySensor ? 1 : 0;
  ZwAcExtFlag = flags.acExtender ? 1 : 0;
}

Types typesOfGenericDevice(const Flags& flags, std::size_t textLength) {
  if (flags.basic && flags.multilevel) return {55, 52, 41};
  if (flags.acExtender) return {54, 46};
  if (flags.binarySensor || (flags.basic && textLength < 10)) return {39, 11, 37, 36, 55, 42};
  return {};
}

// Types and instances read as one text; one that fills the block has no end.
void setIndexText(ZwNodeInfo& node, std::size_t length) {
  std::string bytes(kIndexBytes, 'y');
  if (length < kIndexBytes) bytes[length] = '\0';
  std::memcpy(reinterpret_cast<char*>(&node) + kIndexesAt, bytes.data(), bytes.size());
}

// A list that is written is written from the start, and nothing behind it.
void expectList(TembraAssociation& assoc, int type, const Types& expected, const std::string& what) {
  std::vector<DevType> out(50, static_cast<DevType>(kUntouched));
  const DevType* last = assoc.listSubDevType(static_cast<DevType>(type), out.data());
  EXPECT_EQ(last - out.data(), expected.empty() ? 0 : static_cast<long>(expected.size()) - 1) << what;
  Types all(out.size(), kUntouched);
  std::copy(expected.begin(), expected.end(), all.begin());
  EXPECT_TRUE(std::equal(all.begin(), all.end(), out.begin())) << what;
}

}  // namespace

TEST(SubTypesTest, OfEveryTypeButTheGenericDevice) {
  Router router;
  ASSERT_EQ(listedTypes().size(), 10U);
  int types = 0;
  for (int type = -1; type <= 300; ++type) {
    if (type == 60) continue;
    const auto listed = listedTypes().find(type);
    for (unsigned bits = 0; bits < 16; ++bits) {
      set(flagsOf(bits));
      expectList(router.assoc(), type, listed == listedTypes().end() ? Types{0} : listed->second, std::to_string(type));
    }
    ++types;
  }
  EXPECT_EQ(types, 301);
  EXPECT_EQ(router.takeTrace(), "");
}

TEST(SubTypesTest, OfTheGenericDeviceByItsCapabilities) {
  Router router;
  TembraAssociation& assoc = router.assoc();
  int checked = 0;
  for (unsigned bits = 0; bits < 16; ++bits) {
    for (std::size_t length = 0; length <= kIndexBytes; ++length, ++checked) {
      set(flagsOf(bits));
      setIndexText(assoc.zwNodeWork, length);
      expectList(assoc, 60, typesOfGenericDevice(flagsOf(bits), length),
                 "flags " + std::to_string(bits) + ", text of " + std::to_string(length));
    }
  }
  EXPECT_EQ(checked, 16 * 64);
}

TEST(SubTypesTest, AnInstanceOfZeroEndsTheText) {
  Router router;
  TembraAssociation& assoc = router.assoc();
  set(kBasicOnly);
  for (ZwIndexEntry& entry : assoc.zwNodeWork.indexes) entry = {14, 1};
  expectList(assoc, 60, {}, "a long table");
  assoc.zwNodeWork.indexes[4].instance = 0;
  expectList(assoc, 60, {39, 11, 37, 36, 55, 42}, "nine bytes before an instance of 0");
}

TEST(SubTypesTest, LookAtTheWorkingCopyAndChangeNothing) {
  Router router;
  TembraAssociation& assoc = router.assoc();
  set(kBasicOnly);
  setIndexText(assoc.zwNodeWork, 10);
  const ZwNodeInfo work = assoc.zwNodeWork;
  setIndexText(assoc.zwNodeRx, 0);
  expectList(assoc, 60, {}, "only the received block is short");
  EXPECT_EQ(std::memcmp(&work, &assoc.zwNodeWork, sizeof work), 0);
  EXPECT_EQ(BasicFlag, 1);
}
