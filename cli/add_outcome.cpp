#include "add_outcome.h"

#include <cstring>
#include <span>

#include "failure.h"

namespace tembra::cli {
namespace {

struct Reason {
  int code;
  const char* text;
};

constexpr Reason kEnds[] = {
    {EVENT_ALREADY_ADDED, "the device is in the device list already."},
    {EVENT_ADD_FAILED, "the device could not be added: the radio gave it up, or nothing is known of its kind."},
};

// What the library was waiting for when time was over, by the progress it had reported last.
constexpr Reason kTimeouts[] = {
    {0, "no device answered in time."},
    {EVENT_ADDING, "a device answered, but did not say in time which one it is."},
    {EVENT_GETTING_INFO, "the device's description could not be read in time."},
    {EVENT_SELECT_TYPE, "no type was chosen in time."},
    {EVENT_CREATED, "the device was not named in time."},
};

const char* reasonFor(std::span<const Reason> reasons, int code) {
  for (const Reason& reason : reasons) {
    if (reason.code == code) return reason.text;
  }
  return nullptr;
}

const char* timeoutReason(const AssocEvent& event) {
  TimeoutReport report{};
  std::memcpy(&report, event.payload, sizeof report);
  const char* reason = reasonFor(kTimeouts, report.lastEventCode);
  return reason == nullptr ? "time is over." : reason;
}

}  // namespace

void throwIfAddEnded(Operation& operation, const HeardEvent& heard) {
  const bool timedOut = heard.event.code == EVENT_TIMEOUT;
  const char* reason = timedOut ? timeoutReason(heard.event) : reasonFor(kEnds, heard.event.code);
  if (reason == nullptr) return;
  operation.ended();
  throw Failure(kFailed, reason);
}

}  // namespace tembra::cli
