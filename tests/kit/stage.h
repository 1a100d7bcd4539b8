// Whether a test is on: the interposed functions are the plain ones before a Router is made and after it is gone.
#ifndef TEMBRA_TESTS_KIT_STAGE_H
#define TEMBRA_TESTS_KIT_STAGE_H

#include <tembra/events.h>

#include <atomic>
#include <functional>
#include <map>
#include <mutex>
#include <string>

#include "kit/virtual_kernel.h"

namespace kit {

enum class Clock {
  kVirtual,  // time passes when the test says so
  kReal      // receiving and sleeping are the kernel's
};

struct Stage {
  explicit Stage(Clock chosen) : clock(chosen) {}

  const Clock clock;
  VirtualKernel kernel;
  std::mutex mutex;
  std::map<int, std::string> typeNames;    // device-type names that differ from the platform's
  std::map<std::string, int> typeNumbers;  // likewise the numbers of names
  bool loggerThrows = false;
  std::atomic<int> haste{1};  // by which the real clock's waits are shortened
  std::function<void(AssocEvent*)> eventHook;
  std::function<void(const std::string&)> logHook;
  std::function<void(const std::string&)> sendHook;
};

/// The stage of the running test, or null.
Stage* stage();
void setStage(Stage* stage);

}  // namespace kit

#endif
