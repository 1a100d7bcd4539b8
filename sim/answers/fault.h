// Faults of a server's answers: MESSAGE:KIND[=VALUE][:COUNT], for instance "joined:lost", "info:late=500:3",
// "*:twice:always". COUNT says how many answers are hit (1 when it is left out).
#ifndef TEMBRA_SIM_ANSWERS_FAULT_H
#define TEMBRA_SIM_ANSWERS_FAULT_H

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tembra::sim {

enum class FaultKind { kLost, kLate, kTwice, kShort, kCode, kSilence, kReordered, kForeign };

struct Fault {
  static constexpr int kAlways = -1;
  static constexpr int kFailure = -1;

  std::string message;  ///< "*" hits every message
  FaultKind kind;
  int value;      ///< of the kind; of a code also kFailure, which is what the message itself fails with
  int remaining;  ///< answers still to hit, or kAlways
};

/// Throws std::invalid_argument with one sentence.
Fault parseFault(std::string_view specification);

/// What becomes of one answer.
struct Distortion {
  bool lost = false;
  bool silent = false;  ///< neither this answer nor any later one of the operation
  bool twice = false;
  bool reordered = false;  ///< changes place with the answer that follows in the operation
  bool foreign = false;    ///< a stranger says it first
  std::chrono::milliseconds late{0};
  std::optional<std::size_t> length;
  std::optional<int> code;
};

/// The faults that are set, first come first served.
class FaultList {
 public:
  void add(Fault fault) { faults_.push_back(std::move(fault)); }
  void clear() { faults_.clear(); }
  std::size_t count() const { return faults_.size(); }

  /// Uses up one hit of every fault that concerns `message`.
  Distortion take(std::string_view message);

 private:
  std::vector<Fault> faults_;
};

}  // namespace tembra::sim

#endif
