// Every datagram that was sent in the world, in order: what really happened, whatever anybody says about it.
#ifndef TEMBRA_TESTS_CAMPAIGN_WIRE_H
#define TEMBRA_TESTS_CAMPAIGN_WIRE_H

#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "campaign/world_clock.h"

namespace campaign {

struct Datagram {
  Time at;
  std::string from;  ///< "127.255.255.254:8888"
  std::string to;
  std::vector<unsigned char> bytes;
};

inline constexpr char kLibraryAddress[] = "127.255.255.4:8888";
inline constexpr char kZwaveAddress[] = "127.255.255.254:8888";
inline constexpr char kZigbeeAddress[] = "127.255.255.253:8888";
inline constexpr char kHueAddress[] = "127.255.255.252:8888";
inline constexpr char kNestAddress[] = "127.255.255.251:8888";
inline constexpr char kHaAddress[] = "127.255.255.1:9999";

class Wire {
 public:
  void add(Datagram datagram);
  /// The datagrams from the n-th on.
  [[nodiscard]] std::vector<Datagram> since(std::size_t first);
  [[nodiscard]] std::size_t count();

 private:
  std::mutex mutex_;
  std::vector<Datagram> all_;
};

Wire& wire();

}  // namespace campaign

#endif
