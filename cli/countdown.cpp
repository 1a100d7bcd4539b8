#include "countdown.h"

#include <tembra/events.h>

namespace tembra::cli {
namespace {

using std::chrono::seconds;
using std::chrono::steady_clock;

constexpr seconds kFirstWait{180};

struct Wait {
  AssocEventCode after;
  seconds length;
};

constexpr Wait kWaits[] = {
    {EVENT_ADDING, seconds{60}},
    {EVENT_GETTING_INFO, seconds{180}},
    {EVENT_REMOVED, seconds{20}},
    {EVENT_REMOVED_UNKNOWN, seconds{20}},
};

}  // namespace

Countdown::Countdown() : wait_(kFirstWait), began_(steady_clock::now()) {}

void Countdown::heard(int eventCode) {
  began_ = steady_clock::now();
  for (const Wait& row : kWaits) {
    if (row.after == eventCode) wait_ = row.length;
  }
}

int Countdown::secondsLeft() const {
  const auto left = wait_ - (steady_clock::now() - began_);
  return static_cast<int>(std::chrono::ceil<seconds>(left).count());
}

}  // namespace tembra::cli
