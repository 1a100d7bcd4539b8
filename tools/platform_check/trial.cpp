#include "platform_check/trial.h"

#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "platform_check/memory.h"
#include "platform_check/temporary_folder.h"

namespace tembra::platform_check {
namespace {

constexpr int kSecondsForAStep = 10;
constexpr int kEndingSignals[] = {SIGHUP, SIGINT, SIGTERM};

volatile std::sig_atomic_t caughtSignal = 0;

template <std::size_t size>
void put(char (&out)[size], const std::string& text) {
  std::snprintf(out, size, "%s", text.c_str());
}

void noteEnding(Report& report, const std::string& came) {
  report.verdict = Verdict::kFault;
  put(report.tried, report.underWay);
  put(report.expected, "that it returns");
  put(report.came, came);
}

// Returns through exit(), as front ends do: what the router's libraries do at the end belongs to the check.
[[noreturn]] void runInChild(const Check& check, Report& report, const std::string& folder) {
  for (const int number : kEndingSignals) std::signal(number, SIG_DFL);
  setpgid(0, 0);  // a command that hangs ends with the check
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  Trial trial(report, folder);
  try {
    check.run(trial);
  } catch (const FaultFound&) {
    _exit(0);
  } catch (...) {
    noteEnding(report, "an exception");
    _exit(0);
  }
  std::exit(0);
}

/// Whether the child ended, with each of its steps in time; else it is killed.
bool endsInTime(pid_t child, const Report& report, int& status) {
  constexpr int kTurns = 100 * kSecondsForAStep;
  unsigned steps = 0;
  for (int turn = 0; turn < kTurns && caughtSignal == 0; ++turn) {
    if (waitpid(child, &status, WNOHANG) == child) return true;
    if (steps != report.steps) turn = 0;
    steps = report.steps;
    usleep(10000);
  }
  kill(-child, SIGKILL);
  kill(child, SIGKILL);
  waitpid(child, &status, 0);
  return false;
}

std::string howItEnded(int status) {
  if (!WIFSIGNALED(status)) return "the process ended with status " + std::to_string(WEXITSTATUS(status));
  const int number = WTERMSIG(status);
  return "the process ended by signal " + std::to_string(number) + " (" + strsignal(number) + ")";
}

void runApart(const Check& check, Report& report) {
  const TemporaryFolder folder;
  const pid_t child = fork();
  if (child < 0) {
    std::perror("tembra-platform-check: fork");
    std::exit(3);
  }
  if (child == 0) runInChild(check, report, folder.path());
  int status = 0;
  if (!endsInTime(child, report, status)) {
    noteEnding(report, "nothing for " + std::to_string(kSecondsForAStep) + " seconds");
  } else if (status != 0) {
    noteEnding(report, howItEnded(status));
  }
}

Verdict tell(const Check& check, const Report& report) {
  switch (report.verdict) {
    case Verdict::kWell:
      std::printf("ok      %s: %s\n", check.function, check.summary);
      break;
    case Verdict::kRemark:
    case Verdict::kFault:
      std::printf("%s  %s: tried %s; expected %s; came %s\n", report.verdict == Verdict::kFault ? "FAULT " : "remark",
                  check.function, report.tried, report.expected, report.came);
      break;
  }
  std::fflush(stdout);
  return report.verdict;
}

}  // namespace

void Trial::tries(const std::string& what) {
  put(report_.underWay, what);
  goesOn();
}

void Trial::expects(bool holds, const std::string& expected, const std::string& came) {
  if (holds) return;
  note(Verdict::kFault, expected, came);
  throw FaultFound{};
}

void Trial::prefers(bool holds, const std::string& expected, const std::string& came) {
  if (!holds && report_.verdict == Verdict::kWell) note(Verdict::kRemark, expected, came);
}

void Trial::note(Verdict verdict, const std::string& expected, const std::string& came) {
  put(report_.tried, report_.underWay);
  put(report_.expected, expected);
  put(report_.came, came);
  report_.verdict = verdict;
}

void catchSignals() {
  for (const int number : kEndingSignals) {
    struct sigaction before {};
    sigaction(number, nullptr, &before);
    if (before.sa_handler == SIG_IGN) continue;  // nohup, or a shell's background
    struct sigaction action {};
    action.sa_handler = [](int caught) { caughtSignal = caught; };
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    sigaction(number, &action, nullptr);
  }
}

Verdict perform(const Check& check) {
  const SharedMemory<Report> report;
  runApart(check, *report);
  if (caughtSignal != 0) raise(caughtSignal);  // which ends the process now
  return tell(check, *report);
}

std::string quoted(const std::string& text) {
  constexpr std::size_t kMost = 40;
  std::string shown = "\"" + text.substr(0, kMost) + (text.size() > kMost ? "...\"" : "\"");
  for (char& character : shown) {
    if (character < ' ' || character > '~') character = '?';
  }
  return shown;
}

}  // namespace tembra::platform_check
