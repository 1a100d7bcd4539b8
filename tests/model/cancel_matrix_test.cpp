// A cancel at any moment: every phase of every operation x every kind of cancel x every answer that may still come x
// the next operation, begun before that answer or after it. Library and model agree in every step.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "comparison.h"
#include "kit/node.h"
#include "kit/zigbee_device.h"
#include "operations.h"
#include "oracle/offsets.h"

using kit::Node;
using kit::ZigbeeDevice;

namespace oracle {
namespace {

constexpr unsigned char kKnownNode = 5, kNewNode = 77;
constexpr unsigned short kKnownAddress = 0x1234, kNewAddress = 0x4321;
constexpr char kMac[] = "02:a1:b2:01:02:03";

using Names = std::vector<std::string>;
using Inputs = std::map<std::string, Step>;

Step from(const std::string& sender, const Bytes& bytes) {
  Step step = call("datagram", sender);
  step.bytes = bytes;
  return step;
}

Step node(Node answer) { return from("127.255.255.254", answer.bytes()); }
Step zigbee(const ZigbeeDevice& answer) { return from("127.255.255.253", answer.bytes()); }
Step status(int code, unsigned short address = kKnownAddress) { return zigbee(ZigbeeDevice(address).status(code)); }
ZigbeeDevice described() { return ZigbeeDevice(kKnownAddress).status(10); }

template <std::size_t Size>
Step answer(const char* sender, int first, int second = 0) {
  Record<Size> record;
  record.setNumber(0, first);
  record.setNumber(4, second);
  return from(sender, {record.bytes.begin(), record.bytes.end()});
}

Step hue(int type) { return answer<3260>("127.255.255.252", type); }
Step nest(int command, int result = 0) { return answer<12>("127.255.255.251", command, result); }

const Inputs& calls() {
  static const Inputs all = {
      {"add", call("addDevZigbeeZwave")},         {"remove", call("removeDevZigbeeZwave")},
      {"hue", call("Hue_addBridge", kMac)},       {"nest", call("Nest_add", std::string("account"))},
      {"cancel zigbee", call("sendCancelTo", 1)}, {"cancel zwave", call("sendCancelTo", 2)},
      {"cancel both", call("sendCancelTo", 3)},
  };
  return all;
}

const Inputs& answers() {
  static const Inputs all = [] {
    Inputs made = {
        {"node 0", node(Node(0).generic(0x02).specific(7))},
        {"node 255", node(Node(255).generic(0x02).specific(7))},
        {"known", node(Node(kKnownNode).generic(0x02).specific(7))},
        {"plain", node(Node(kNewNode).generic(0x02).specific(7))},
        {"types", node(Node(kNewNode).generic(0x10).specific(1))},
        {"unclassified", node(Node(kNewNode).basic(0))},
        {"zb 10 plain", zigbee(described().cluster(0x0006))},
        {"zb 10 types", zigbee(described().zone(0x0000).cluster(0x0500))},
        {"zb 10 refused", zigbee(described().clusters({0x0006, 0x0B04}))},
        {"nest 124 failed", nest(124, -1)},
        {"nest 124 other", nest(124, 7)},
        {"ha", from("127.255.255.1", Node(kKnownNode).bytes())},
        {"stranger", from("127.0.0.1", Node(kKnownNode).bytes())},
    };
    for (const int code : {1, 2, 3, 5, 6, 11, 12}) made["zb " + std::to_string(code)] = status(code);
    for (const int code : {1, 2, 12}) made["stranger zb " + std::to_string(code)] = status(code, kNewAddress);
    for (int type = 0; type <= 10; ++type) made["hue " + std::to_string(type)] = hue(type);
    for (const int command : {99, 100, 121, 122, 123, 124}) made["nest " + std::to_string(command)] = nest(command);
    return made;
  }();
  return all;
}

Row device(int id, int kind, std::size_t at, int address) {
  Record<512> record;
  record.setNumber(kDeviceId, id);
  record.setText("Lamp", kDeviceName);
  record.setNumber(kDeviceKind, kind);
  record.setNumber(at, address);
  return {std::to_string(id), {record.bytes.begin(), record.bytes.end()}};
}

/// Both, one cell after the other.
class Matrix {
 public:
  Matrix() : both_(library_) {
    Step database = call("database");
    database.rows = {device(12, 2, kDeviceNode, kKnownNode), device(13, 1, kDeviceAddress, kKnownAddress)};
    take(database);
  }

  /// From rest on, whatever was before.
  bool agrees(const Names& cell) {
    cell_.clear();
    take(call("at rest"));
    if (both_.model().timeout != 180) timeOut();
    return std::all_of(cell.begin(), cell.end(), [this](const std::string& input) { return agreesOn(input); });
  }

 private:
  bool agreesOn(const std::string& input) {
    cell_ += ", " + input;
    if (input == "timeout") timeOut();
    const Inputs& all = calls().contains(input) ? calls() : answers();
    if (const auto step = all.find(input); step != all.end()) take(step->second);
    return !testing::Test::HasFailure();
  }

  void take(const Step& step) {
    if (const auto found = both_.take(step)) ADD_FAILURE() << cell_ << ": " << *found;
  }

  void timeOut() { take(call("wait", static_cast<int>(both_.model().left))); }

  Library library_;
  SideBySide both_;
  std::string cell_;
};

Names joined(std::initializer_list<Names> parts) {
  Names all;
  for (const Names& part : parts) all.insert(all.end(), part.begin(), part.end());
  return all;
}

Names lateInputs() {
  Names all = {"none", "timeout"};
  for (const auto& [name, step] : answers()) all.push_back(name);
  return all;
}

// The next operation hears of a node and then of nobody any more.
const Names kRest = {"plain", "timeout"};

/// The cells of these phases; false from the first one on that is not as it should be.
std::size_t cellsThatAgree(const std::vector<Names>& phases) {
  Matrix matrix;
  std::size_t cells = 0;
  for (const Names& phase : phases) {
    for (const char* cancel : {"cancel zigbee", "cancel zwave", "cancel both"}) {
      for (const std::string& late : lateInputs()) {
        for (const char* next : {"add", "remove"}) {
          if (!matrix.agrees(joined({phase, {cancel, late, next}, kRest}))) return cells;
          if (!matrix.agrees(joined({phase, {cancel, next, late}, kRest}))) return cells;
          cells += 2;
        }
      }
    }
  }
  return cells;
}

constexpr std::size_t kCellsOfAPhase = std::size_t{3} * 42 * 2 * 2;

}  // namespace

TEST(CancelMatrix, OfAnAddThatWaits) {
  EXPECT_EQ(cellsThatAgree({{"add"}, {"add", "zb 3"}, {"add", "zb 5"}}), 3 * kCellsOfAPhase);
}

TEST(CancelMatrix, OfAZwaveAdd) {
  EXPECT_EQ(cellsThatAgree({{"add", "plain"}, {"add", "plain", "plain"}}), 2 * kCellsOfAPhase);
}

TEST(CancelMatrix, OfAZwaveNodeThatAwaitsItsName) {
  EXPECT_EQ(cellsThatAgree({{"add", "types", "types", "types"}, {"add", "plain", "plain", "plain"}}),
            2 * kCellsOfAPhase);
}

TEST(CancelMatrix, OfAZigbeeAdd) {
  EXPECT_EQ(cellsThatAgree({{"add", "zb 1"}, {"add", "zb 1", "zb 6"}}), 2 * kCellsOfAPhase);
}

TEST(CancelMatrix, OfAZigbeeDeviceThatAwaitsItsName) {
  EXPECT_EQ(cellsThatAgree({{"add", "zb 1", "zb 6", "zb 10 types"},
                            {"add", "zb 1", "zb 6", "zb 10 plain"},
                            {"add", "zb 1", "zb 6", "zb 10 refused"}}),
            3 * kCellsOfAPhase);
}

TEST(CancelMatrix, OfARemove) {
  EXPECT_EQ(cellsThatAgree({{"remove"}, {"remove", "known"}, {"remove", "plain"}}), 3 * kCellsOfAPhase);
}

TEST(CancelMatrix, OfAHueOrNestOperationOrOfNone) {
  EXPECT_EQ(cellsThatAgree({{"hue"}, {"hue", "hue 0"}, {"nest"}, {}}), 4 * kCellsOfAPhase);
}

}  // namespace oracle
