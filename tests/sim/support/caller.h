// The library's place in the tests: sends what it sends, from its address, and hears what it hears.
#ifndef TEMBRA_TESTS_SIM_SUPPORT_CALLER_H
#define TEMBRA_TESTS_SIM_SUPPORT_CALLER_H

#include <cstddef>
#include <string>
#include <vector>

#include "sim/core/descriptor.h"
#include "sim/core/endpoints.h"
#include "tembra/records.h"

namespace tembra::sim::test {

struct Heard {
  std::size_t length;
  ZwNodeInfo block;  ///< zero where the datagram did not reach
};

/// "1036/2 1036/0": length and node byte of each.
std::string summary(const std::vector<Heard>& all);

class Caller {
 public:
  Caller();

  void command(int operation, int controllerCommand);
  void add() { command(1, 1); }
  void remove() { command(1, 4); }
  void cancel() { command(4, 0); }
  void reset() { command(5, 0); }
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
