// One check of a function of the router's, in a process of its own: a function that crashes or hangs ends the check and
// not the program.
#ifndef TEMBRA_TOOLS_PLATFORM_CHECK_TRIAL_H
#define TEMBRA_TOOLS_PLATFORM_CHECK_TRIAL_H

#include <atomic>
#include <string>

namespace tembra::platform_check {

enum class Verdict { kWell, kRemark, kFault };

/// What a check found first; a fault stands before a remark. Lies in memory that both processes share.
struct Report {
  Verdict verdict;
  std::atomic<unsigned> steps;  ///< that the check took: while they grow it does not hang
  char underWay[200];           ///< what it is trying
  char tried[200];
  char expected[200];
  char came[200];
};

class Trial {
 public:
  Trial(Report& report, std::string folder) : report_(report), folder_(std::move(folder)) {}

  /// Says what comes next, so that it is known when it never returns.
  void tries(const std::string& what);

  /// Says that the check goes on. Any thread may call it.
  void goesOn() { ++report_.steps; }

  /// A fault unless it holds, which ends the check.
  void expects(bool holds, const std::string& expected, const std::string& came);

  /// A remark unless it holds; the check goes on.
  void prefers(bool holds, const std::string& expected, const std::string& came);

  /// An empty folder for this check.
  [[nodiscard]] const std::string& folder() const { return folder_; }

 private:
  void note(Verdict verdict, const std::string& expected, const std::string& came);

  Report& report_;
  std::string folder_;
};

struct Check {
  const char* function;
  const char* summary;  ///< what was tried, when all of it went well
  void (*run)(Trial&);
};

/// Thrown by a fault.
struct FaultFound {};

/// From now on a signal that ends this program (Ctrl-C) first ends the check, and removes its folder.
void catchSignals();

/// Runs the check and prints its line.
Verdict perform(const Check& check);

/// A text in quotes, at most 40 characters of it, fit for a terminal.
std::string quoted(const std::string& text);

}  // namespace tembra::platform_check

#endif
