// Reads the datagrams of a step as the library has to, which the oracle knows, and as the front end has to.
#ifndef TEMBRA_TESTS_CAMPAIGN_READER_H
#define TEMBRA_TESTS_CAMPAIGN_READER_H

#include <limits>
#include <optional>

#include "campaign/expectation.h"
#include "oracle/model.h"

namespace campaign {

inline constexpr Time kForEver = std::numeric_limits<Time>::max() / 2;
inline constexpr Time kNaming = 100 * kMillisecond;  // the front end lets the library settle before it names a device

class Reader {
 public:
  explicit Reader(const Record& record);
  Expectation read();

 private:
  void begin();
  void take(const Datagram& datagram);
  void passTime(Time now);
  void settle(Time now);
  /// What the model did meanwhile; the codes of its events, and the moment when it is done.
  std::vector<int> tell(Time& now);

  // What the front end makes of it.
  void heard(Time now, int code);
  void heardWhileAdding(Time now, int code);
  void heardWhileRemoving(Time now, int code);
  void heardFromIpServer(Time now, int code);
  [[nodiscard]] int firstType(int code) const;
  void handOver(Time now);
  void end(Time now, int status);

  const Record& record_;
  Expectation expected_;
  oracle::Model model_;
  Time waitBegan_;
  std::optional<Time> named_;
  int type_ = 0;     // that the device gets then
  int leaving_ = 0;  // the event that told it
  bool over_ = false;
};

/// Whether the goal is the Hue server's or the Nest server's.
bool isIp(Goal goal);
bool isHue(Goal goal);

/// Whether the front end finds none of the servers that it would ask.
bool nobodyIsThere(const Record& record);

}  // namespace campaign

#endif
