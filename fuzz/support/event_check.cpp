#include "support/event_check.h"

#include <cstring>
#include <string_view>

#include "support/invariant.h"
#include "words/event_names.h"

namespace fuzz {
namespace {

using tembra::words::Payload;

constexpr std::string_view kJsonBegin = R"({"CommandType":")";

template <typename T>
T payloadOf(const AssocEvent& event) {
  T payload;
  std::memcpy(&payload, event.payload, sizeof payload);
  return payload;
}

void checkTimeout(const TimeoutReport& report) {
  require(report.lastEventCode == 0 || isProgressCode(report.lastEventCode), "a time-out tells a progress code");
  require(isTerminated(report.json), "the text of a time-out ends");
  require(std::string_view(report.json).starts_with(kJsonBegin), "the text of a time-out begins with the command");
  require(std::string_view(report.json).ends_with(R"("Reason":"TimeoutReached"})"), "and ends with the reason");
}

void checkReport(const DeviceReport& report) {
  constexpr std::size_t mostSubTypes = 6;
  require(isTerminated(report.name), "the name in a report ends");
  require(isTerminated(report.location), "the location in a report ends");
  require(isTerminated(report.removedName), "the removed name in a report ends");
  require(isTerminated(report.json), "the text in a report ends");
  require(isZero(report.subTypes, mostSubTypes * sizeof(DevType), sizeof report.subTypes), "at most six sub-types");
}

void checkBridges(const HueBridgeList& list) {
  require(list.count >= 0 && list.count <= static_cast<int>(std::size(list.mac)), "at most 25 bridges");
  for (const auto& mac : list.mac) require(isTerminated(mac), "a bridge's MAC text ends");
  for (const auto& address : list.address) require(isTerminated(address), "a bridge's address ends");
}

void checkJson(const AssocEvent& event) {
  const auto* text = reinterpret_cast<const char*>(event.payload);
  require(std::memchr(text, '\0', sizeof event.payload) != nullptr, "the text of a Hue event ends");
  require(std::string_view(text).starts_with(kJsonBegin), "the text of a Hue event begins with the command");
  require(std::string_view(text).ends_with("\"}\n"), "the text of a Hue event is whole");
}

void checkPayload(const AssocEvent& event, Payload payload) {
  switch (payload) {
    case Payload::kTimeout:
      return checkTimeout(payloadOf<TimeoutReport>(event));
    case Payload::kProgress:
    case Payload::kChoice:
    case Payload::kCreated:
    case Payload::kRemoved:
      return checkReport(payloadOf<DeviceReport>(event));
    case Payload::kBridges:
      return checkBridges(payloadOf<HueBridgeList>(event));
    case Payload::kJson:
      return checkJson(event);
    case Payload::kNest:
    case Payload::kNone:
      break;
  }
}

}  // namespace

bool isProgressCode(int code) {
  return code == EVENT_ADDING || code == EVENT_GETTING_INFO || code == EVENT_SELECT_TYPE || code == EVENT_CREATED ||
         code == EVENT_HUE_BRIDGES;
}

void checkEvent(const AssocEvent& event) {
  const auto* row = tembra::words::findEvent(event.code);
  require(row != nullptr, "codes of events are known");
  require(event.source >= 0 && event.source <= SERVER_NEST, "sources of events are known");
  if (row->sources == "Nest") require(event.source == SERVER_NEST, "Nest events come from the Nest server");
  checkPayload(event, tembra::words::payloadOf(event));
}

}  // namespace fuzz
