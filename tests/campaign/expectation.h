// What has to come of a step, reckoned from nothing but the datagrams that were sent to the library, when they were
// sent and by whom, and from what the device database held before.
#ifndef TEMBRA_TESTS_CAMPAIGN_EXPECTATION_H
#define TEMBRA_TESTS_CAMPAIGN_EXPECTATION_H

#include <optional>
#include <string>
#include <vector>

#include "campaign/record.h"

namespace campaign {

struct ExpectedEvent {
  Time at;
  int code;
};

struct Sent {
  Time at;
  std::string text;  ///< as `commandText` has it
};

/// A device that joined or left.
struct Party {
  Server radio;
  unsigned address;
  std::string type;  ///< that it was given
};

struct Expectation {
  std::vector<ExpectedEvent> events;
  std::vector<Sent> sent;  ///< by the library
  int status = 0;
  Time end = 0;  ///< of the front end
  std::optional<Party> added;
  std::optional<Party> removed;
};

Expectation expectationOf(const Record& record);

}  // namespace campaign

#endif
