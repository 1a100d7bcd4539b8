// The library's place in the tests: sends what it sends, from its address, and hears what it hears.
#ifndef TEMBRA_TESTS_SIM_SUPPORT_CALLER_H
#define TEMBRA_TESTS_SIM_SUPPORT_CALLER_H

#include <cstddef>
#include <string>
#include <vector>

#include "platform/descriptor.h"
#include "sim/core/endpoints.h"
#include "sim/core/record_bytes.h"
#include "tembra/records.h"

namespace tembra::sim::test {

struct Heard {
  std::size_t length;
  ZwNodeInfo block;                  ///< zero where the datagram did not reach
  std::vector<unsigned char> bytes;  ///< the datagram
  std::string sender;                ///< "127.255.255.254"

  template <typename Record>
  Record as() const {
    return recordFrom<Record>(bytes);
  }
};

/// "1036/2 1036/0": length and first byte, which is the Z-Wave node, of each.
std::string summary(const std::vector<Heard>& all);
/// "444/1 444/6": length and ZigBee status of each.
std::string statuses(const std::vector<Heard>& all);

class Caller {
 public:
  Caller();

  void command(int operation, int controllerCommand);
  void add() { command(1, 1); }
  void remove() { command(1, 4); }
  void cancel() { command(4, 0); }
  void reset() { command(5, 0); }
  void zigbee(const std::string& text, const std::string& argument);
  void zigbeeAdd() { zigbee("option button1", "IAS"); }
  void zigbeeRemove() { zigbee(" ", "remove"); }
  void zigbeeCancel() { zigbee("network pjoin 0", "cancel"); }
  void zigbeeReset();
  void hue(unsigned command, const std::string& bridgeId = "", const std::string& argument = "");
  void nest(unsigned command, const std::string& text = "");
  void send(const Endpoint& to, const std::vector<unsigned char>& datagram);
  void notice(int recordKind, const std::vector<unsigned char>& record);

  /// The next answer; fails the test when none comes in good time.
  Heard hear();
  /// The answers that have come so far.
  std::vector<Heard> heardSoFar();

 private:
  bool receive(Heard& heard, int flags);

  Descriptor socket_;
};

}  // namespace tembra::sim::test

#endif
