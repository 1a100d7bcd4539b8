// The answers of the Hue and the Nest server.
#include <tembra/events.h>
#include <tembra/records.h>

#include <algorithm>

#include "campaign/reader.h"

namespace campaign {
namespace {

struct Result {
  int told;
  int event;
};

constexpr Result kHueResults[] = {{0, EVENT_HUE_BRIDGES},    {1, EVENT_HUE_FAILED}, {2, EVENT_HUE_ADDED},
                                  {3, EVENT_HUE_NO_BRIDGE},  {4, EVENT_HUE_BUTTON}, {5, EVENT_HUE_UNKNOWN_BRIDGE},
                                  {6, EVENT_HUE_BULB_ADDED}, {8, EVENT_HUE_DONE},   {9, EVENT_HUE_DONE_2}};
constexpr Result kNestResults[] = {
    {100, EVENT_NEST_44}, {121, EVENT_NEST_41}, {122, EVENT_NEST_43}, {123, EVENT_NEST_42}};

template <std::size_t N>
std::optional<int> eventFor(const Result (&results)[N], int told) {
  const auto* const row = std::find_if(std::begin(results), std::end(results),
                                       [told](const Result& result) { return result.told == told; });
  return row == std::end(results) ? std::nullopt : std::optional(row->event);
}

std::optional<int> nestEvent(const NestAnswer& answer) {
  if (answer.command != 124) return eventFor(kNestResults, answer.command);
  if (answer.status == 0) return EVENT_NEST_45;
  return answer.status == -1 ? std::optional<int>(EVENT_NEST_46) : std::nullopt;
}

}  // namespace

void Reader::hue(Time now) { ip(now, true, eventFor(kHueResults, received<HueAnswer>().type)); }

void Reader::nest(Time now) { ip(now, false, nestEvent(received<NestAnswer>())); }

// The Hue server's bridge list and what it says without being understood leave things going on. The web server's
// connection closes after every answer.
void Reader::ip(Time now, bool fromHue, std::optional<int> event) {
  if (event) tell(now, *event);
  if (fromHue) {
    idle_ = event == EVENT_HUE_BRIDGES ? false : idle_ || event.has_value();
  } else {
    idle_ = true;
  }
  const bool closed = record_.step.role == "web";
  if (!over_ && isIp(record_.step.goal) && (idle_ || closed)) end(now, 1);
}

}  // namespace campaign
