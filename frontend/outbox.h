// What the caller sees: the events that wait for it, and the state of the moment.
#ifndef TEMBRA_FRONTEND_OUTBOX_H
#define TEMBRA_FRONTEND_OUTBOX_H

#include <chrono>
#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

#include "event.h"

namespace tembra::frontend {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::milliseconds;

inline constexpr Milliseconds kForStoring{5000};  // then the HA server has not stored the device

/// A device, as far as the library knows it.
struct KnownDevice {
  int id = 0;
  std::string name;
};

/// Thrown when descriptors are short.
struct NoDescriptor {
  int error;  ///< errno
};

/// Any thread may call all of it at any time.
class Outbox {
 public:
  Outbox();  ///< throws NoDescriptor
  ~Outbox();
  Outbox(const Outbox&) = delete;
  Outbox& operator=(const Outbox&) = delete;

  [[nodiscard]] int descriptor() const { return descriptor_; }

  // ---- For the operation that runs ----
  void begin(int operation);  ///< phase OPENING
  /// @param limit negative: none is known @param device that the phase is about
  void enter(tembra_phase phase, Milliseconds limit, const KnownDevice& device = {});
  void setRadio(int radio);  ///< the radio that the operation deals with from now on
  void offer(const tembra_found& found, int id, Milliseconds limit);    ///< phase CHOICE
  std::string emit(tembra_event_kind kind, const Detail& detail = {});  ///< returns the line for watchers
  /// Tells the end. Then nothing runs, unless a call of the library is not over yet: phase CLOSING until `clear`.
  std::string end(const tembra_ended& ended, bool isCallLate);
  void clear();

  /// Milliseconds since the phase began.
  [[nodiscard]] long long waited() const;

  /// Whether a device waits for a choice; then it is being stored. @param name the chosen one; empty: the proposed one
  [[nodiscard]] bool takeOffer(std::string_view name);

  // ---- For the caller ----
  [[nodiscard]] std::unique_ptr<tembra_event> next(int milliseconds);
  [[nodiscard]] tembra_state state() const;

 private:
  // With the lock held.
  void change(tembra_phase phase, Milliseconds limit, const KnownDevice& device);
  std::string add(tembra_event_kind kind, const Detail& detail);
  void forget();
  [[nodiscard]] long long endsIn(Clock::time_point now) const;
  [[nodiscard]] long long sinceBeginning(Clock::time_point now) const;

  const int descriptor_;
  mutable std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<std::unique_ptr<tembra_event>> events_;
  tembra_state state_ = sized<tembra_state>();
  unsigned lastNumber_ = 0;
  Clock::time_point began_;
  Clock::time_point entered_;
  Clock::time_point limit_;
  bool hasLimit_ = false;
};

}  // namespace tembra::frontend

#endif
