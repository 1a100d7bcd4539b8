#include "sim/replay/comparison.h"

#include <algorithm>
#include <utility>

#include "platform/printable.h"
#include "sim/replay/commands_sent.h"
#include "sim/replay/difference.h"

namespace tembra::sim {
namespace {

std::string ordinal(int number) {
  const bool isTeen = number / 10 % 10 == 1;
  const char* const endings[] = {"th", "st", "nd", "rd"};
  return std::to_string(number) + endings[isTeen || number % 10 > 3 ? 0 : number % 10];
}

std::string nameOf(Server server) { return std::string(endpointOf(server).name); }

}  // namespace

Comparison::Comparison(const Traffic& traffic, Report report, Over over)
    : traffic_(traffic), report_(std::move(report)), over_(std::move(over)), ordinals_(traffic.datagrams.size()) {
  std::array<int, kServers.size()> counts{};
  for (std::size_t place = 0; place < traffic.datagrams.size(); ++place) {
    if (!at(place).isRequest) continue;
    const auto server = static_cast<std::size_t>(*at(place).server);
    expectsAny_ = true;
    queues_[server].push_back(place);
    ordinals_[place] = ++counts[server];
  }
}

bool Comparison::isSame(std::size_t place, Bytes request) const {
  return differencesOf(*at(place).server, at(place).bytes, request).empty();
}

// A request that is like a later one of the recording is that one: those between were left out.
void Comparison::heard(Server server, Bytes request) {
  constexpr std::size_t farthest = 8;
  Queue& queue = queues_[static_cast<std::size_t>(server)];
  if (queue.empty()) {
    tell("the " + sim::nameOf(server) + " hears more than then: " + printable(describe(server, request)));
    return;
  }
  const bool isAltered = commandIn(server, at(queue.front()).bytes) == commandIn(server, request);
  const auto end = queue.begin() + static_cast<std::ptrdiff_t>(isAltered ? 1 : std::min(farthest, queue.size()));
  const auto same = std::find_if(queue.begin(), end, [&](std::size_t place) { return isSame(place, request); });
  if (same == end) {
    tellAltered(queue.front(), request);
  } else {
    for (const std::size_t wanted = *same; queue.front() != wanted; drop(queue)) tellMissing(queue.front());
  }
  drop(queue);
}

void Comparison::drop(Queue& queue) {
  const std::size_t place = queue.front();
  queue.pop_front();
  over_(place);
}

std::vector<std::size_t> Comparison::outstanding() const {
  std::vector<std::size_t> places;
  for (const Queue& queue : queues_) places.insert(places.end(), queue.begin(), queue.end());
  std::sort(places.begin(), places.end());
  return places;
}

void Comparison::giveUp() {
  for (const std::size_t place : outstanding()) tellMissing(place);
  for (Queue& queue : queues_) {
    while (!queue.empty()) drop(queue);
  }
}

std::string Comparison::nameOf(std::size_t place) const {
  const RecordedDatagram& request = at(place);
  return "datagram " + std::to_string(request.packet) + " of the recording, the " + ordinal(ordinals_[place]) +
         " to the " + sim::nameOf(*request.server) + " (" + printable(describe(*request.server, request.bytes)) + "), ";
}

void Comparison::tellMissing(std::size_t place) { tell(nameOf(place) + "is not sent now"); }

void Comparison::tellAltered(std::size_t place, Bytes now) {
  constexpr std::size_t most = 8;
  const Server server = *at(place).server;
  std::string text = nameOf(place) + "is not the same now (" + printable(describe(server, now)) + ")";
  const std::vector<std::string> lines = differencesOf(server, at(place).bytes, now);
  for (std::size_t i = 0; i < std::min(most, lines.size()); ++i) text += "\n  " + lines[i];
  if (lines.size() > most) text += "\n  and " + std::to_string(lines.size() - most) + " more";
  tell(text);
}

void Comparison::tell(const std::string& text) {
  ++differences_;
  report_(text);
}

}  // namespace tembra::sim
