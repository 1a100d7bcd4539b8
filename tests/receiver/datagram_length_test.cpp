// Datagrams of any length and content: what is taken from them is always the same number of bytes.
#include <gtest/gtest.h>

#include "kit/router.h"

using kit::Bytes;
using kit::Node;
using kit::Router;

namespace {

constexpr std::size_t kLengths[] = {0, 1, 2, 1035, 1036, 1037, 4095, 4096, 4097, 60000};

class DatagramLength : public testing::Test {
 protected:
  Router router;
  TembraAssociation& assoc = router.connect();

  std::vector<int> codes() {
    std::vector<int> each;
    for (const auto& recorded : router.takeEvents()) each.push_back(recorded.event.code);
    return each;
  }
};

}  // namespace

TEST_F(DatagramLength, EveryLengthOfTheZwaveServerIsAnAnswer) {
  for (const std::size_t length : kLengths) {
    assoc.assocState = ASSOC;
    router.zwave().send(Bytes(length, 0x21));
    EXPECT_EQ(codes(), std::vector<int>{EVENT_ADDING}) << length;
    EXPECT_EQ(assoc.assocState, ZW_ASSOC) << length;
  }
}

// The very first datagram of a thread completes itself with zeros.
TEST_F(DatagramLength, AnEmptyFirstAnswerIsNodeZero) {
  assoc.removeDevZigbeeZwave();
  router.zwave().send(Bytes{});
  EXPECT_EQ(codes(), std::vector<int>{EVENT_REMOVED_UNKNOWN});
  EXPECT_EQ(assoc.assocState, ASSOC_IDLE);
  EXPECT_NE(router.takeTrace().find("111 Unknown Sensor Removed (Z-wave) and Node:0"), std::string::npos);
}

TEST_F(DatagramLength, EveryLengthOfAStrangerIsDropped) {
  const std::string dropped = kit::lines({"log 2 libTembraAssoc:received command from unknown server\\n"});
  for (const std::size_t length : kLengths) {
    router.from("127.9.9.9").send(Bytes(length, 0xFF));
    EXPECT_EQ(router.takeTrace(), dropped) << length;
  }
}

// A block of one byte over and over: no end of any list, no end of any text. What follows it is handled as ever.
TEST_F(DatagramLength, BlocksWithoutAnyEndAreHandled) {
  const struct {
    unsigned char ink;
    int state;
    std::vector<int> codes;
    int stateAfter;
  } kRows[] = {
      {0xFF, ASSOC, {EVENT_ADD_FAILED}, ASSOC_IDLE},
      {0xFF, ZW_ASSOC, {EVENT_ADD_FAILED}, ASSOC_IDLE},
      {0xFF, ZW_ASSOC_QUERY, {EVENT_CREATED}, ASSOC_IDLE},
      {0xFF, DEASSOC, {EVENT_REMOVED_UNKNOWN}, ASSOC_IDLE},
      {0x00, ASSOC, {EVENT_ADDING}, ZW_ASSOC},
      {0x00, ZW_ASSOC, {EVENT_ADD_FAILED}, ASSOC_IDLE},
      {0x00, ZW_ASSOC_QUERY, {EVENT_ADD_FAILED}, ASSOC_IDLE},
      {0x00, DEASSOC, {EVENT_REMOVED_UNKNOWN}, ASSOC_IDLE},
      {0x20, ZW_ASSOC_QUERY, {EVENT_CREATED}, ASSOC_IDLE},  // 181 basic values, and nothing else
      {0x30, ZW_ASSOC_QUERY, {EVENT_SELECT_TYPE}, ASSOC_IDLE},
      {0x71, ZW_ASSOC_QUERY, {EVENT_CREATED}, ASSOC_IDLE},
  };
  for (const auto& row : kRows) {
    BasicFlag = SensorBinaryFlag = MultilevelFlag = ZwAcExtFlag = 0;
    assoc.assocState = row.state;
    router.zwave().send(Bytes(4097, row.ink));
    EXPECT_EQ(codes(), row.codes) << static_cast<int>(row.ink) << " in state " << row.state;
    EXPECT_EQ(assoc.assocState, row.stateAfter) << static_cast<int>(row.ink) << " in state " << row.state;
  }
}
