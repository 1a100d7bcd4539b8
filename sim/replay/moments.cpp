#include "sim/replay/moments.h"

#include <algorithm>

#include "sim/core/happenings.h"
#include "sim/replay/commands_sent.h"
#include "sim/replay/playback.h"

namespace tembra::sim {
namespace {

using std::chrono::milliseconds;

std::string_view nameOf(Happening happening) {
  const auto* const row = std::find_if(kHappeningNames.begin(), kHappeningNames.end(),
                                       [happening](const auto& it) { return it.first == happening; });
  return row->second;
}

struct EventRow {
  Server server;
  Command command;
  Happening happening;
};

// A radio command reaches the Z-Wave server last: it stands for both. Cancels and notices of removals come by
// themselves.
constexpr EventRow kEvents[] = {
    {Server::kZwave, Command::kAdd, Happening::kAdd},
    {Server::kZwave, Command::kRemove, Happening::kRemove},
    {Server::kZwave, Command::kCancel, Happening::kCancel},
    {Server::kZwave, Command::kReset, Happening::kReset},
    {Server::kZigbee, Command::kAdd, Happening::kZigbeeAdd},
    {Server::kZigbee, Command::kRemove, Happening::kZigbeeRemove},
    {Server::kZigbee, Command::kCancel, Happening::kZigbeeCancel},
    {Server::kZigbee, Command::kResetEnd, Happening::kZigbeeReset},
    {Server::kHue, Command::kHueDiscover, Happening::kHueDiscover},
    {Server::kHue, Command::kHueAdd, Happening::kHueAdd},
    {Server::kHue, Command::kHueBulb, Happening::kHueBulb},
    {Server::kHue, Command::kHueRefresh, Happening::kHueRefresh},
    {Server::kHue, Command::kHueRemove, Happening::kHueRemove},
    {Server::kNest, Command::kNestLink, Happening::kNestLink},
    {Server::kNest, Command::kNestUnlink, Happening::kNestUnlink},
    {Server::kHa, Command::kNoticeAdded, Happening::kAdded},
    {Server::kHa, Command::kNoticeRemovedAll, Happening::kRemovedAll},
};

constexpr std::size_t kNowhere = static_cast<std::size_t>(-1);

}  // namespace

// Of a command to both radios, the Z-Wave server's counts: the order in which the two arrive is nobody's.
std::string_view Moments::eventAt(std::size_t place) const {
  const RecordedDatagram& request = traffic_.datagrams[place];
  if (!request.isRequest) return "";
  const Command command = commandIn(*request.server, request.bytes);
  const auto isTwin = [&](std::size_t other) {
    if (other >= traffic_.datagrams.size()) return false;
    const RecordedDatagram& twin = traffic_.datagrams[other];
    return twin.isRequest && twin.server == Server::kZwave && commandIn(Server::kZwave, twin.bytes) == command;
  };
  if (request.server == Server::kZigbee && (isTwin(place + 1) || isTwin(place - 1))) return "";
  const auto* const row = std::find_if(std::begin(kEvents), std::end(kEvents), [&](const EventRow& it) {
    return it.server == request.server && it.command == command;
  });
  return row == std::end(kEvents) ? "" : nameOf(row->happening);
}

// The last request behind the last step that an answer may have followed, as in a replay.
std::size_t Moments::anchorBefore(std::size_t end, std::optional<Server> answering) const {
  for (std::size_t earlier = end; earlier > next_; --earlier) {
    const std::size_t candidate = earlier - 1;
    if (!eventAt(candidate).empty() && !isReaction(traffic_.datagrams[candidate], answering)) return candidate;
  }
  return kNowhere;
}

void Moments::passOver(std::size_t end, std::string_view event) {
  for (; next_ < end; ++next_) {
    if (eventAt(next_) == event) write(event, milliseconds(0), "note", "passed over");
  }
}

void Moments::add(std::size_t place, milliseconds lead, const std::string& action, const std::string& value) {
  const RecordedDatagram& answer = traffic_.datagrams[place];
  writeAfter(anchorBefore(place, answer.server), answer.time - lead, action, value);
  next_ = place + 1;
}

void Moments::writeAfter(std::size_t anchor, std::chrono::microseconds moment, const std::string& action,
                         const std::string& value) {
  std::string_view on;
  std::chrono::microseconds since = steps_.empty() ? traffic_.datagrams.front().time : lastStep_;
  if (anchor != kNowhere) {
    on = eventAt(anchor);
    since = traffic_.datagrams[anchor].time;
    passOver(anchor, on);
  }
  write(on, std::max(std::chrono::round<milliseconds>(moment - since), milliseconds(0)), action, value);
  lastStep_ = std::max(moment, since);
}

void Moments::prepare(std::size_t place, const std::string& action, const std::string& value) {
  constexpr milliseconds answered(500);  // by then the simulated server has said what it says by itself
  const std::string_view event = eventAt(place);
  std::size_t earlier = kNowhere;
  for (std::size_t i = next_; i < place; ++i) {
    if (eventAt(i) == event) earlier = i;
  }
  if (earlier == kNowhere) return write("", milliseconds(0), action, value);
  passOver(earlier, event);
  next_ = earlier + 1;
  write(event, answered, action, value);
}

void Moments::finish() {
  constexpr std::chrono::seconds rest(1);
  const std::size_t end = traffic_.datagrams.size();
  writeAfter(anchorBefore(end, std::nullopt), traffic_.datagrams.back().time + rest, "stop", "true");
}

void Moments::write(std::string_view on, Time after, const std::string& action, const std::string& value) {
  steps_.push_back({on, after, action, value});
}

}  // namespace tembra::sim
