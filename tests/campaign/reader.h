// Reads the datagrams of a step as the library and the front end have to.
#ifndef TEMBRA_TESTS_CAMPAIGN_READER_H
#define TEMBRA_TESTS_CAMPAIGN_READER_H

#include <array>
#include <cstring>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "campaign/expectation.h"

namespace campaign {

inline constexpr Time kForEver = std::numeric_limits<Time>::max() / 2;
inline constexpr Time kFirstWait = 180 * kSecond;
inline constexpr Time kJoiningWait = 60 * kSecond;
inline constexpr Time kDescribingWait = 180 * kSecond;
inline constexpr Time kLeavingWait = 20 * kSecond;
inline constexpr Time kNaming = 100 * kMillisecond;  // the front end lets the library settle before it names a device

class Reader {
 public:
  explicit Reader(const Record& record);
  Expectation read();

 private:
  enum class Awaits { kAnyRadio, kIdentity, kInfo, kRemoval, kClosing, kNothing };

  void begin();
  void tellRadios(const std::string& command);
  void reset(Time now, const std::string& radios);
  void take(const Datagram& datagram);
  void passTime(Time now);
  void timeOut(Time now);

  void zwave(Time now);
  void zwaveIdentified(Time now, unsigned node);
  void zwaveLeft(Time now, unsigned node);
  void zigbee(Time now);
  void zigbeeJoins(Time now, int status);
  void zigbeeLeft(Time now, int status);
  void hue(Time now);
  void nest(Time now);
  void ip(Time now, bool fromHue, std::optional<int> event);

  void tell(Time now, int code) {
    expected_.events.push_back({now, code});
    heard(now, code);
  }
  void send(Time now, const std::string& text) { expected_.sent.push_back({now, text}); }
  void cancelOther(Time now, Server answers);
  void becomeIdle(Time now);

  // What the front end makes of it.
  void heard(Time now, int code);
  void heardWhileAdding(Time now, int code);
  void handOver(Time now);
  void heardWhileRemoving(Time now, int code);
  void heardFromIpServer(Time now, int code);
  void end(Time now, int status);

  [[nodiscard]] bool isStored(unsigned node) const;
  /// The latest datagram; what it does not reach is what came before.
  template <typename Data>
  [[nodiscard]] Data received() const {
    Data data;
    std::memcpy(&data, buffer_.data(), sizeof data);
    return data;
  }

  const Record& record_;
  Expectation expected_;
  Awaits awaits_ = Awaits::kNothing;
  bool idle_ = false;
  Time waitBegan_;
  Time wait_;
  std::vector<Server> toCancel_;
  std::array<unsigned char, 65536> buffer_{};
  std::size_t latestLength_ = 0;
  std::optional<Server> joins_;
  int leaving_ = 0;  // the event that told it
  std::optional<Time> named_;
  bool over_ = false;
};

/// Whether the goal is the Hue server's or the Nest server's.
bool isIp(Goal goal);
bool isHue(Goal goal);

/// Whether the front end finds none of the servers that it would ask.
bool nobodyIsThere(const Record& record);

}  // namespace campaign

#endif
