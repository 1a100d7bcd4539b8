// Compares what the library sends with what it sent when the recording was made, server by server.
#ifndef TEMBRA_SIM_REPLAY_COMPARISON_H
#define TEMBRA_SIM_REPLAY_COMPARISON_H

#include <array>
#include <cstddef>
#include <deque>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "sim/replay/traffic.h"

namespace tembra::sim {

class Comparison {
 public:
  /// Told a sentence for each difference, with lines that begin with a blank below it.
  using Report = std::function<void(const std::string& text)>;
  /// Told the place of each recorded request that is over: it came, or another one came in its place.
  using Over = std::function<void(std::size_t place)>;

  Comparison(const Traffic& traffic, Report report, Over over);

  void heard(Server server, std::span<const unsigned char> request);

  /// Whether the recording holds any request.
  [[nodiscard]] bool expectsAny() const { return expectsAny_; }
  /// Places of the requests that have not come.
  [[nodiscard]] std::vector<std::size_t> outstanding() const;
  /// Reports them.
  void giveUp();

  [[nodiscard]] int differences() const { return differences_; }

 private:
  using Bytes = std::span<const unsigned char>;
  using Queue = std::deque<std::size_t>;

  [[nodiscard]] const RecordedDatagram& at(std::size_t place) const { return traffic_.datagrams[place]; }
  [[nodiscard]] bool isSame(std::size_t place, Bytes request) const;
  void drop(Queue& queue);
  void tell(const std::string& text);
  void tellMissing(std::size_t place);
  void tellAltered(std::size_t place, Bytes now);
  [[nodiscard]] std::string nameOf(std::size_t place) const;

  const Traffic& traffic_;
  Report report_;
  Over over_;
  std::array<Queue, kServers.size()> queues_;  ///< places of the requests that are still to come
  std::vector<int> ordinals_;                  ///< the how manieth of its server each request is
  bool expectsAny_ = false;
  int differences_ = 0;
};

}  // namespace tembra::sim

#endif
