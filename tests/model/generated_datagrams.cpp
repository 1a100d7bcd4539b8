#include "generator.h"
#include "operations.h"
#include "oracle/hue_entries.h"
#include "oracle/offsets.h"

namespace oracle {
namespace {

constexpr char kZwaveServer[] = "127.255.255.254";
constexpr char kZigbeeServer[] = "127.255.255.253";
constexpr char kHueServer[] = "127.255.255.252";
constexpr char kNestServer[] = "127.255.255.251";
constexpr int kAddresses[] = {0x1234, 0x1234, 0x0042, 0x0000, 0xFFFF};

template <std::size_t Size>
Step datagram(const char* sender, const Record<Size>& record, const std::string& words) {
  Step step = call("datagram", std::string(sender), words);
  step.bytes.assign(record.bytes.begin(), record.bytes.end());
  return step;
}

}  // namespace

Step Generator::anyDatagram() {
  return oneOf({{30, &Generator::zwaveDatagram},
                {30, &Generator::zigbeeDatagram},
                {15, &Generator::hueDatagram},
                {12, &Generator::nestDatagram},
                {13, &Generator::strangeDatagram}});
}

Step Generator::zwaveDatagram() { return cutOrPadded(zwaveAnswer(anyNode())); }

Step Generator::zigbeeDatagram() { return cutOrPadded(zigbeeAnswer(below(chance(80) ? 14 : 256))); }

Step Generator::zwaveAnswer(int node) {
  std::string words = "node " + std::to_string(node);
  Record<1036> block = anyBlock(words);
  block.setByte(0, node);
  leaveSomething(block, kNodeKind, words);
  if (chance(10)) block.setNumber(kNodeProposedType, kGenericDevice);
  return datagram(kZwaveServer, block, words);
}

Step Generator::zigbeeAnswer(int status) {
  const int address = oneOf(kAddresses);
  std::string words = "address " + std::to_string(address) + ", status " + std::to_string(status);
  Record<444> description = anyDescription(words);
  description.setWord(0, address);
  description.setByte(kZigbeeMessage, status);
  leaveSomething(description, kZigbeeIndexCount, words);
  return datagram(kZigbeeServer, description, words);
}

Step Generator::hueDatagram() {
  constexpr int kCounts[] = {0, 1, 2, 3, 5, 24, 25, 26, 30, -1, 2147483647};
  const int type = chance(30) ? 0 : below(12) - 1;
  const int count = oneOf(kCounts);
  Record<3260> answer;
  answer.setNumber(0, type);
  answer.setNumber(4, count);
  for (std::size_t entry = 0; entry < 50 && static_cast<int>(entry) < count; ++entry) {
    answer.setText(oneOf(hueEntries()).json, 8 + 65 * entry, 65);
  }
  return cutOrPadded(
      datagram(kHueServer, answer, "result " + std::to_string(type) + ", " + std::to_string(count) + " bridges"));
}

Step Generator::nestDatagram() {
  constexpr int kCommands[] = {100, 121, 122, 123, 124, 124, 124, 99, 101, 120, 125};
  const int command = oneOf(kCommands);
  const int status = below(4) - 1;
  Record<12> answer;
  answer.setNumber(0, command);
  answer.setNumber(4, status);
  answer.setNumber(8, below(1000));
  return cutOrPadded(
      datagram(kNestServer, answer, "command " + std::to_string(command) + ", status " + std::to_string(status)));
}

// A datagram of somebody else: of the HA server, of a stranger, of one whose address passes for a server's.
Step Generator::strangeDatagram() {
  const std::string senders[] = {"127.255.255.1", "127.0.0.1", "127.255.255.25",
                                 "127.255.255.2", "127.9.9.9", "127.255.255.250"};
  Step step = chance(50) ? zwaveAnswer(anyNode()) : zigbeeAnswer(below(14));
  step.text = oneOf(senders);
  return step;
}

Step Generator::cutOrPadded(Step step) {
  if (chance(75)) return step;
  const int length = static_cast<int>(step.bytes.size());
  const int lengths[] = {0, 1, 11, length / 2, length - 1, length + 1, 4096, 4100, below(length + 1)};
  step.bytes.resize(static_cast<std::size_t>(oneOf(lengths)));
  return step;
}

}  // namespace oracle
