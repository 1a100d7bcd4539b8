// A cancel at any moment: every phase of every operation x every kind of cancel x every answer that may still come x
// the next operation, begun before that answer or after it. What is sent, what is told and what is left is what the
// plain rules of cancel_rules.cpp say, step by step.
#include <gtest/gtest.h>

#include <functional>
#include <map>

#include "cancel_rules.h"
#include "kit/router.h"

using kit::Device;
using kit::Node;
using kit::Router;
using kit::ZigbeeDevice;

namespace {

constexpr unsigned char kKnownNode = 5, kNewNode = 77;
constexpr unsigned short kKnownAddress = 0x1234, kNewAddress = 0x4321;

using Steps = std::vector<std::string>;
using Do = std::function<void(Router&)>;

Do node(const Node& answer) {
  return [answer](Router& router) { router.zwave().send(answer); };
}

Do zigbee(const ZigbeeDevice& answer) {
  return [answer](Router& router) { router.zigbee().send(answer); };
}

Do status(int code, unsigned short address = kKnownAddress) { return zigbee(ZigbeeDevice(address).status(code)); }

Do hue(int type) {
  return [type](Router& router) {
    HueAnswer answer{};
    answer.type = type;
    router.hue().send(answer);
  };
}

Do nest(int command, int result = 0) {
  return [command, result](Router& router) {
    NestAnswer answer{};
    answer.command = command;
    answer.status = result;
    router.nest().send(answer);
  };
}

Do cancel(cancel_type type) {
  return [type](Router& router) { router.assoc().sendCancelTo(type); };
}

Do datagramFrom(const char* address, int port) {
  return [address, port](Router& router) { router.from(address, port).send(Node(kKnownNode)); };
}

ZigbeeDevice described() { return ZigbeeDevice(kKnownAddress).status(10); }

char mac[] = "02:a1:b2:01:02:03";
char account[] = "account";

// Every input by its name in the rules; "timeout" and "none" are the machine's own.
const std::map<std::string, Do> kCalls = {
    {"add", [](Router& router) { router.assoc().addDevZigbeeZwave(); }},
    {"remove", [](Router& router) { router.assoc().removeDevZigbeeZwave(); }},
    {"hue", [](Router& router) { router.assoc().Hue_addBridge(mac); }},
    {"nest", [](Router& router) { router.assoc().Nest_add(account); }},
    {"cancel1", cancel(cancel_zigbee)},
    {"cancel2", cancel(cancel_zwave)},
    {"cancel3", cancel(cancel_both)},
};

const std::map<std::string, Do> kAnswers = {
    {"node0", node(Node(0).generic(0x02).specific(7))},
    {"node255", node(Node(255).generic(0x02).specific(7))},
    {"known", node(Node(kKnownNode).generic(0x02).specific(7))},
    {"plain", node(Node(kNewNode).generic(0x02).specific(7))},
    {"types", node(Node(kNewNode).generic(0x10).specific(1))},
    {"unclassified", node(Node(kNewNode).basic(0))},
    {"zb1", status(1)},
    {"zb2", status(2)},
    {"zb3", status(3)},
    {"zb5", status(5)},
    {"zb6", status(6)},
    {"zb11", status(11)},
    {"zb12", status(12)},
    {"zb10plain", zigbee(described().cluster(0x0006))},
    {"zb10types", zigbee(described().zone(0x0000).cluster(0x0500))},
    {"zb10refused", zigbee(described().clusters({0x0006, 0x0B04}))},
    {"zb1stranger", status(1, kNewAddress)},
    {"zb2stranger", status(2, kNewAddress)},
    {"zb12stranger", status(12, kNewAddress)},
    {"hue0", hue(0)},
    {"hue1", hue(1)},
    {"hue2", hue(2)},
    {"hue3", hue(3)},
    {"hue4", hue(4)},
    {"hue5", hue(5)},
    {"hue6", hue(6)},
    {"hue7", hue(7)},
    {"hue8", hue(8)},
    {"hue9", hue(9)},
    {"hue10", hue(10)},
    {"nest99", nest(99)},
    {"nest100", nest(100)},
    {"nest121", nest(121)},
    {"nest122", nest(122)},
    {"nest123", nest(123)},
    {"nest124done", nest(124)},
    {"nest124failed", nest(124, -1)},
    {"nest124other", nest(124, 7)},
    {"ha", datagramFrom("127.255.255.1", 12345)},
    {"stranger", datagramFrom("127.0.0.1", 12345)},
};

// How a datagram of the library is called in the rules.
const std::map<std::string, std::string> kDatagrams = {
    {R"(send zigbee 320 "option button1" @180 "IAS")", "add-zigbee"},
    {R"(send zigbee 320 " " @180 "remove")", "remove-zigbee"},
    {R"(send zigbee 320 "network pjoin 0" @180 "cancel")", "cancel-zigbee"},
    {"send zwave 236 op 1 cmd 1", "add-zwave"},
    {"send zwave 236 op 1 cmd 4", "remove-zwave"},
    {"send zwave 236 op 4 cmd 0", "cancel-zwave"},
    {"send hue 304", "hue-add"},
    {"send nest 256", "nest-add"},
};

// What of a notice tells one kind from another; names and types are other tests' business.
const std::pair<const char*, const char*> kNotices[] = {
    {"send ha 4100 zwave node 5 ", "drop-zwave"},
    {"send ha 4100 zigbee address 4660 message 2 ", "drop-zigbee"},
};

std::string nameOf(const std::string& line) {
  const auto found = kDatagrams.find(line);
  if (found != kDatagrams.end()) return found->second;
  for (const auto& [beginning, name] : kNotices) {
    if (line.rfind(beginning, 0) == 0) return name;
  }
  return line;
}

// The time-out and the failure of a Hue bridge keep whatever source stood in their record.
std::string nameOf(const AssocEvent& event, const TimeoutReport& report) {
  const std::string code = std::to_string(event.code);
  if (event.code == EVENT_TIMEOUT) return code + "<" + std::to_string(report.lastEventCode);
  return event.code == EVENT_HUE_FAILED ? code : code + "/" + std::to_string(event.source);
}

/// The library, one step at a time.
class Machine {
 public:
  Machine() {
    router_.connect();
    router_.database().put(Device(12, "Lamp").zwave(kKnownNode)).put(Device(13, "Door").zigbee(kKnownAddress));
    router_.watch(kit::kWatchTimeouts);
  }

  /// At rest, whatever was before.
  void reset() {
    idle = 1;
    if (wait_ != 180) step("timeout");
    TembraAssociation& assoc = router_.assoc();
    assoc.assocState = ASSOC_IDLE;
    assoc.lastEventCode = assoc.cancelTarget = assoc.activeRadio = 0;
    std::fill(std::begin(cmdtype), std::end(cmdtype), '\0');
    idle = 1;
  }

  /// Does it; what was sent and told in between, as the rules write it.
  std::string step(const std::string& input) {
    router_.forget();
    perform(input);
    return told();
  }

  [[nodiscard]] std::string state() const { return router_.state(); }
  [[nodiscard]] int wait() const { return wait_; }

 private:
  void perform(const std::string& input) {
    if (input == "none") return;
    if (input == "timeout") return router_.advance(wait_);
    const auto& inputs = kCalls.contains(input) ? kCalls : kAnswers;
    inputs.at(input)(router_);
  }

  std::string told() {
    std::string text;
    const auto events = router_.takeEvents();
    auto event = events.begin();
    const std::string trace = router_.takeTrace();
    for (std::size_t begin = 0, end = 0; (end = trace.find('\n', begin)) != std::string::npos; begin = end + 1) {
      const std::string line = trace.substr(begin, end - begin);
      if (line.starts_with("timeout ")) wait_ = std::stoi(line.substr(8));
      std::string word;
      if (line.starts_with("send ")) word = nameOf(line);
      if (line.starts_with("event ")) {
        word = nameOf(event->event, event->timeout());
        ++event;
      }
      if (!word.empty()) text.append(text.empty() ? "" : " ").append(word);
    }
    return text;
  }

  Router router_;
  int wait_ = 180;
};

// A cell of the matrix is a row of steps; the same steps are done by the rules.
bool agree(Machine& machine, const Steps& steps) {
  machine.reset();
  Situation situation;
  std::string cell;
  for (const std::string& input : steps) {
    cell += " " + input;
    const std::string expected = follow(input, situation);
    EXPECT_EQ(machine.step(input), expected) << cell;
    EXPECT_EQ(machine.state(), situation.text()) << cell;
    EXPECT_EQ(machine.wait(), situation.wait) << cell;
    if (testing::Test::HasFailure()) return false;
  }
  return true;
}

Steps joined(std::initializer_list<Steps> parts) {
  Steps all;
  for (const Steps& part : parts) all.insert(all.end(), part.begin(), part.end());
  return all;
}

Steps lateInputs() {
  Steps all = {"none", "timeout"};
  for (const auto& [name, unused] : kAnswers) all.push_back(name);
  return all;
}

// The next operation hears of a node and then of nobody any more.
const Steps kRest = {"plain", "timeout"};

/// The cells of these phases; false from the first one on that is not as it should be.
std::size_t cellsThatAgree(const std::vector<Steps>& phases) {
  Machine machine;
  std::size_t cells = 0;
  for (const Steps& phase : phases) {
    for (const char* cancel : {"cancel1", "cancel2", "cancel3"}) {
      for (const std::string& late : lateInputs()) {
        for (const char* next : {"add", "remove"}) {
          if (!agree(machine, joined({phase, {cancel, late, next}, kRest}))) return cells;
          if (!agree(machine, joined({phase, {cancel, next, late}, kRest}))) return cells;
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
  EXPECT_EQ(cellsThatAgree({{"add"}, {"add", "zb3"}, {"add", "zb5"}}), 3 * kCellsOfAPhase);
}

TEST(CancelMatrix, OfAZwaveAdd) {
  EXPECT_EQ(cellsThatAgree({{"add", "plain"}, {"add", "plain", "plain"}}), 2 * kCellsOfAPhase);
}

TEST(CancelMatrix, OfAZwaveNodeThatAwaitsItsName) {
  EXPECT_EQ(cellsThatAgree({{"add", "types", "types", "types"}, {"add", "plain", "plain", "plain"}}),
            2 * kCellsOfAPhase);
}

TEST(CancelMatrix, OfAZigbeeAdd) {
  EXPECT_EQ(cellsThatAgree({{"add", "zb1"}, {"add", "zb1", "zb6"}}), 2 * kCellsOfAPhase);
}

TEST(CancelMatrix, OfAZigbeeDeviceThatAwaitsItsName) {
  EXPECT_EQ(cellsThatAgree({{"add", "zb1", "zb6", "zb10types"},
                            {"add", "zb1", "zb6", "zb10plain"},
                            {"add", "zb1", "zb6", "zb10refused"}}),
            3 * kCellsOfAPhase);
}

TEST(CancelMatrix, OfARemove) {
  EXPECT_EQ(cellsThatAgree({{"remove"}, {"remove", "known"}, {"remove", "plain"}}), 3 * kCellsOfAPhase);
}

TEST(CancelMatrix, OfAHueOrNestOperationOrOfNone) {
  EXPECT_EQ(cellsThatAgree({{"hue"}, {"hue", "hue0"}, {"nest"}, {}}), 4 * kCellsOfAPhase);
}
