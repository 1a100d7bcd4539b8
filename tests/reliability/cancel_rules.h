// What every input does in every situation, as a plain table: the radio servers' answers, the front end's calls, and
// the wait that ends in vain.
#ifndef TEMBRA_TESTS_RELIABILITY_CANCEL_RULES_H
#define TEMBRA_TESTS_RELIABILITY_CANCEL_RULES_H

#include <string>
#include <string_view>

/// The service between two inputs.
struct Situation {
  int state = 0;
  int idle = 1;
  int last = 0;
  int target = 0;
  int radio = 0;
  std::string command;
  int wait = 180;

  /// As kit::stateText writes it.
  [[nodiscard]] std::string text() const;
};

/// Puts the situation after `input` in place of the one before it.
/// @return what is sent and told meanwhile: "cancel-zigbee 3/2" is a datagram and event 3 of source 2. Event 2 stands
/// with the code that it carries, "2<3". "no rule" when the table has not exactly one row for it.
std::string follow(std::string_view input, Situation& situation);

#endif
