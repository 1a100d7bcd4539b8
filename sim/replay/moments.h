// When the steps of a scenario happen: after which event of the simulated servers, and how much later.
#ifndef TEMBRA_SIM_REPLAY_MOMENTS_H
#define TEMBRA_SIM_REPLAY_MOMENTS_H

#include <chrono>
#include <cstddef>
#include <string_view>
#include <vector>

#include "sim/replay/scenario_steps.h"
#include "sim/replay/traffic.h"

namespace tembra::sim {

/// Steps in the order of a recording. Events that no step waits for are passed over by notes.
class Moments {
 public:
  explicit Moments(const Traffic& traffic) : traffic_(traffic) {}

  /// An action that made, or was, the datagram at a place; `lead`: so much before it was sent.
  void add(std::size_t place, std::chrono::milliseconds lead, const std::string& action, const std::string& value);
  /// An action that changes the answer to the request at a place: before the request comes.
  void prepare(std::size_t place, const std::string& action, const std::string& value);
  /// The end of the recording.
  void finish();

  [[nodiscard]] const std::vector<WrittenStep>& steps() const { return steps_; }

 private:
  using Time = std::chrono::milliseconds;

  [[nodiscard]] std::string_view eventAt(std::size_t place) const;
  [[nodiscard]] std::size_t anchorBefore(std::size_t end, std::optional<Server> answering) const;
  void writeAfter(std::size_t anchor, std::chrono::microseconds moment, const std::string& action,
                  const std::string& value);
  void passOver(std::size_t end, std::string_view event);
  void write(std::string_view on, Time after, const std::string& action, const std::string& value);

  const Traffic& traffic_;
  std::vector<WrittenStep> steps_;
  std::size_t next_ = 0;                   ///< the first place behind the last step
  std::chrono::microseconds lastStep_{0};  ///< the moment of the last step, as the recording has it
};

}  // namespace tembra::sim

#endif
