#include "support/event_check.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "support/invariant.h"

namespace fuzz {
namespace {

enum class Payload { kNone, kTimeout, kReport, kBridges, kJson, kNest };

struct KnownEvent {
  AssocEventCode code;
  Payload payload;
};

// A payload that only one of the radios sends is listed as none and found by its source.
constexpr KnownEvent kKnownEvents[] = {
    {EVENT_TIMEOUT, Payload::kTimeout},      {EVENT_ADDING, Payload::kNone},
    {EVENT_ALREADY_ADDED, Payload::kNone},   {EVENT_GETTING_INFO, Payload::kNone},
    {EVENT_SELECT_TYPE, Payload::kReport},   {EVENT_CREATED, Payload::kReport},
    {EVENT_ADD_FAILED, Payload::kNone},      {EVENT_REMOVED, Payload::kReport},
    {EVENT_REMOVED_UNKNOWN, Payload::kNone}, {EVENT_HUE_BRIDGES, Payload::kBridges},
    {EVENT_HUE_DONE, Payload::kJson},        {EVENT_HUE_DONE_2, Payload::kJson},
    {EVENT_HUE_ADDED, Payload::kJson},       {EVENT_HUE_BUTTON, Payload::kJson},
    {EVENT_HUE_NO_BRIDGE, Payload::kJson},   {EVENT_HUE_UNKNOWN_BRIDGE, Payload::kJson},
    {EVENT_HUE_BULB_ADDED, Payload::kJson},  {EVENT_HUE_FAILED, Payload::kJson},
    {EVENT_NEST_41, Payload::kNest},         {EVENT_NEST_42, Payload::kNest},
    {EVENT_NEST_43, Payload::kNest},         {EVENT_NEST_44, Payload::kNest},
    {EVENT_NEST_45, Payload::kNest},         {EVENT_NEST_46, Payload::kNest},
};

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

bool isReportOfZigbee(const AssocEvent& event) {
  return event.source == SERVER_ZIGBEE &&
         (event.code == EVENT_ADDING || event.code == EVENT_GETTING_INFO || event.code == EVENT_ADD_FAILED);
}

void checkPayload(const AssocEvent& event, Payload payload) {
  switch (payload) {
    case Payload::kTimeout:
      return checkTimeout(payloadOf<TimeoutReport>(event));
    case Payload::kReport:
      return checkReport(payloadOf<DeviceReport>(event));
    case Payload::kBridges:
      return checkBridges(payloadOf<HueBridgeList>(event));
    case Payload::kJson:
      return checkJson(event);
    case Payload::kNest:
      return require(event.source == SERVER_NEST, "Nest events come from the Nest server");
    case Payload::kNone:
      if (isReportOfZigbee(event)) checkReport(payloadOf<DeviceReport>(event));
  }
}

}  // namespace

bool isProgressCode(int code) {
  return code == EVENT_ADDING || code == EVENT_GETTING_INFO || code == EVENT_SELECT_TYPE || code == EVENT_CREATED ||
         code == EVENT_HUE_BRIDGES;
}

void checkEvent(const AssocEvent& event) {
  const auto* known = std::ranges::find(kKnownEvents, event.code, &KnownEvent::code);
  require(known != std::end(kKnownEvents), "codes of events are known");
  require(event.source >= 0 && event.source <= SERVER_NEST, "sources of events are known");
  checkPayload(event, known->payload);
}

}  // namespace fuzz
