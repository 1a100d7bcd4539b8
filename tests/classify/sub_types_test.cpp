// The types that a user may choose instead: every type, every capability, every text length.
#include <gtest/gtest.h>
#include <tembra/globals.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "kit/router.h"
#include "oracle/sub_types.h"

using kit::Router;
using oracle::Capabilities;
using oracle::Types;

namespace {

constexpr int kUntouched = -77;
constexpr std::size_t kIndexesAt = 973;
constexpr std::size_t kIndexBytes = sizeof(ZwNodeInfo) - kIndexesAt;

constexpr Capabilities kBasicOnly{.basic = 1};

Capabilities capabilitiesOf(unsigned bits) {
  const auto bit = [bits](unsigned number) { return static_cast<unsigned char>(bits >> number & 1); };
  return {bit(0), bit(1), bit(2), bit(3)};
}

void raise(const Capabilities& raised) {
  BasicFlag = raised.basic;
  MultilevelFlag = raised.multilevel;
  SensorBinaryFlag = raised.binarySensor;
  ZwAcExtFlag = raised.acExtender;
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
  int types = 0;
  int typesWithAChoice = 0;
  for (int type = -1; type <= 300; ++type) {
    if (type == 60) continue;
    for (unsigned bits = 0; bits < 16; ++bits) {
      raise(capabilitiesOf(bits));
      expectList(router.assoc(), type, oracle::subTypesOf(type, capabilitiesOf(bits), 0), std::to_string(type));
    }
    ++types;
    if (oracle::subTypesOf(type, {}, 0).size() > 1) ++typesWithAChoice;
  }
  EXPECT_EQ(types, 301);
  EXPECT_EQ(typesWithAChoice, 10);
  EXPECT_EQ(router.takeTrace(), "");
}

TEST(SubTypesTest, OfTheGenericDeviceByItsCapabilities) {
  Router router;
  TembraAssociation& assoc = router.assoc();
  int checked = 0;
  for (unsigned bits = 0; bits < 16; ++bits) {
    for (std::size_t length = 0; length <= kIndexBytes; ++length, ++checked) {
      raise(capabilitiesOf(bits));
      setIndexText(assoc.zwNodeWork, length);
      expectList(assoc, 60, oracle::subTypesOf(60, capabilitiesOf(bits), length),
                 "flags " + std::to_string(bits) + ", text of " + std::to_string(length));
    }
  }
  EXPECT_EQ(checked, 16 * 64);
}

TEST(SubTypesTest, AnInstanceOfZeroEndsTheText) {
  Router router;
  TembraAssociation& assoc = router.assoc();
  raise(kBasicOnly);
  for (ZwIndexEntry& entry : assoc.zwNodeWork.indexes) entry = {14, 1};
  expectList(assoc, 60, {}, "a long table");
  assoc.zwNodeWork.indexes[4].instance = 0;
  expectList(assoc, 60, {39, 11, 37, 36, 55, 42}, "nine bytes before an instance of 0");
}

TEST(SubTypesTest, LookAtTheWorkingCopyAndChangeNothing) {
  Router router;
  TembraAssociation& assoc = router.assoc();
  raise(kBasicOnly);
  setIndexText(assoc.zwNodeWork, 10);
  const ZwNodeInfo work = assoc.zwNodeWork;
  setIndexText(assoc.zwNodeRx, 0);
  expectList(assoc, 60, {}, "only the received block is short");
  EXPECT_EQ(std::memcmp(&work, &assoc.zwNodeWork, sizeof work), 0);
  EXPECT_EQ(BasicFlag, 1);
}
