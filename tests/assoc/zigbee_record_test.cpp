// Handing a ZigBee device over to the HA server.
#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <numeric>
#include <string>

#include "kit/router_test.h"
#include "texts.h"

using kit::Bytes;
using kit::Call;
using kit::lines;

namespace {

using ZigbeeDoneTest = kit::ConnectedTest;

constexpr std::size_t kName = 378;
constexpr std::size_t kLocation = 410;
constexpr std::size_t kRecord = 444;

// A record whose every byte says where it stands.
void fill(ZbDeviceInfo& device) {
  auto* bytes = reinterpret_cast<unsigned char*>(&device);
  std::iota(bytes, bytes + sizeof device, static_cast<unsigned char>(1));
}

Bytes bytesOf(const ZbDeviceInfo& device) {
  const auto* first = reinterpret_cast<const unsigned char*>(&device);
  return {first, first + sizeof device};
}

// A text with its NUL, up to the end of the record, whose last byte ends it.
void put(Bytes& record, std::size_t offset, const std::string& text) {
  const std::size_t kept = std::min(text.size(), kRecord - offset - 1);
  std::copy_n(text.begin(), kept, record.begin() + static_cast<std::ptrdiff_t>(offset));
  record[offset + kept] = 0;
}

Bytes noticeOf(const Bytes& record) {
  Bytes notice(4100, 0);
  std::copy(record.begin(), record.end(), notice.begin() + 4);
  return notice;
}

}  // namespace

TEST_F(ZigbeeDoneTest, SendsTheRecordWithItsTextsAndMessageKind) {
  fill(assoc.zbDevice);
  Bytes expected = bytesOf(assoc.zbDevice);
  expected[10] = 10;
  put(expected, kName, "Door");
  put(expected, kLocation, "Hall");
  setTexts(assoc, "Door", "Hall");
  router.forget();
  EXPECT_EQ(assoc.addingDone(), 0);
  const auto sends = router.takeSends();
  ASSERT_EQ(sends.size(), 1U);
  EXPECT_EQ(sends[0].destination, "ha");
  EXPECT_EQ(sends[0].bytes, noticeOf(expected));
  EXPECT_EQ(bytesOf(assoc.zbDevice), expected) << "the record itself is kept as sent";
}

TEST_F(ZigbeeDoneTest, SaysSoBeforeSendingAndNothingAfter) {
  assoc.zbDevice.shortAddress = 0x1234;
  assoc.zbDevice.devType = 28;
  setTexts(assoc, "Door", "Hall");
  router.forget();
  EXPECT_EQ(assoc.addingDone(), 0);
  EXPECT_EQ(router.takeTrace(),
            lines({
                "log 0 libTembraAssoc:inside addingDone",
                "log 0 libTembraAssoc:Name:Door Location:Hall",
                "log 0 libTembraAssoc:Sending final addingDone packet to HA Server",
                R"(send ha 4100 zigbee address 4660 message 10 type 28 name "Door" location "Hall")",
            }));
}

TEST_F(ZigbeeDoneTest, AFailureToSendIsTheResult) {
  router.fail(Call::kSendto, EPERM);
  EXPECT_EQ(assoc.addingDone(), -1);
  EXPECT_EQ(router.takeTrace(), lines({
                                    "log 0 libTembraAssoc:inside addingDone",
                                    "log 0 libTembraAssoc:Name: Location:",
                                    "log 0 libTembraAssoc:Sending final addingDone packet to HA Server",
                                    R"(send ha 4100 zigbee address 0 message 10 type 0 name "" location "" -> EPERM)",
                                    "stderr sendto error: Operation not permitted",
                                }));
  EXPECT_EQ(assoc.zbDevice.msgCode, 10);
}

TEST_F(ZigbeeDoneTest, IsWhatEveryKindButZwaveMeans) {
  for (const int kind : {0, 1, 3, 255, -2, 2 + 256}) {
    assoc.zwNodeWork.deviceKind = kind;
    EXPECT_EQ(assoc.addingDone(), 0);
    const auto sends = router.takeSends();
    ASSERT_EQ(sends.size(), 1U);
    EXPECT_EQ(sends[0].bytes[0], 0) << kind;
    EXPECT_EQ(sends[0].bytes[4 + 10], 10) << kind;
    EXPECT_EQ(assoc.zwNodeWork.deviceKind, kind) << "nothing is cleared";
  }
}

TEST_F(ZigbeeDoneTest, LeavesTheZwaveSideAlone) {
  std::memset(&assoc.zwNodeWork, 7, sizeof assoc.zwNodeWork);
  const ZwNodeInfo before = assoc.zwNodeWork;
  BasicFlag = MultilevelFlag = SensorBinaryFlag = ZwAcExtFlag = 1;
  assoc.addingDone();
  EXPECT_EQ(std::memcmp(&assoc.zwNodeWork, &before, sizeof before), 0);
  EXPECT_EQ(BasicFlag + MultilevelFlag + SensorBinaryFlag + ZwAcExtFlag, 4);
}

// The name is written first and may run into the location; nothing ever runs out of the record.
TEST_F(ZigbeeDoneTest, LongTextsRunTogetherWithinTheRecord) {
  for (const std::size_t name : {0U, 31U, 32U, 40U, 65U, 66U, 67U, 179U, 180U, 5000U}) {
    for (const std::size_t location : {0U, 4U, 33U, 34U, 35U, 179U, 5000U}) {
      fill(assoc.zbDevice);
      Bytes expected = bytesOf(assoc.zbDevice);
      expected[10] = 10;
      put(expected, kName, std::string(std::min<std::size_t>(name, 179), 'n'));
      put(expected, kLocation, std::string(std::min<std::size_t>(location, 179), 'l'));
      std::memset(&assoc.zwNodeWork, 0x5A, sizeof assoc.zwNodeWork);
      setTexts(assoc, std::string(name, 'n'), std::string(location, 'l'));
      router.forget();
      EXPECT_EQ(assoc.addingDone(), 0);
      EXPECT_EQ(router.takeSends().at(0).bytes, noticeOf(expected)) << name << ", " << location;
      EXPECT_EQ(assoc.zwNodeWork.nodeId, 0x5A) << "what stands behind the record";
    }
  }
}

TEST_F(ZigbeeDoneTest, ANameOf32JoinsTheLocation) {
  setTexts(assoc, std::string(40, 'n'), "Hall");
  assoc.addingDone();
  const auto bytes = router.takeSends().at(0).bytes;
  std::string joined(32, 'n');
  joined += "Hall";
  EXPECT_STREQ(reinterpret_cast<const char*>(bytes.data() + 4 + kName), joined.c_str());
}
