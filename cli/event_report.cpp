#include "event_report.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <nlohmann/json.hpp>

#include "device_types.h"
#include "platform/printable.h"
#include "texts.h"
#include "words/event_names.h"

namespace tembra::cli {
namespace {

using words::Payload;
using Json = nlohmann::ordered_json;

template <class Record>
Record payloadAs(const AssocEvent& event) {
  static_assert(sizeof(Record) <= sizeof event.payload);
  Record record{};
  std::memcpy(&record, event.payload, sizeof record);
  return record;
}

Json reportedTypeJson(DevType type) { return {{"number", static_cast<int>(type)}, {"name", typeName(type)}}; }

// A text that should be JSON: as such if it is, else as a text.
Json parsed(const std::string& text) {
  Json value = Json::parse(text, nullptr, false);
  return value.is_discarded() ? Json(text) : value;
}

void addTimeout(Json& object, const HeardEvent& heard) {
  const auto report = payloadAs<TimeoutReport>(heard.event);
  object["lastEvent"] = report.lastEventCode == 0 ? Json() : Json(words::eventName(report.lastEventCode));
  object["report"] = parsed(fieldText(report.json));
}

void addProgress(Json& object, const HeardEvent& heard) {
  const DeviceReport report = deviceReport(heard);
  object["status"] = report.status;
  object["report"] = parsed(fieldText(report.json));
}

void addChoice(Json& object, const HeardEvent& heard) {
  object["type"] = reportedTypeJson(createdType(heard));
  object["choices"] = Json::array();
  for (const DevType type : choices(deviceReport(heard))) object["choices"].push_back(reportedTypeJson(type));
}

void addCreated(Json& object, const HeardEvent& heard) {
  const DeviceReport report = deviceReport(heard);
  object["name"] = fieldText(report.name);
  object["location"] = fieldText(report.location);
  object["type"] = reportedTypeJson(createdType(heard));
}

void addRemoved(Json& object, const HeardEvent& heard) {
  const DeviceReport report = deviceReport(heard);
  object["name"] = fieldText(report.removedName);
  object["id"] = report.removedId;
}

void addBridges(Json& object, const HeardEvent& heard) {
  object["bridges"] = Json::array();
  for (const FoundBridge& bridge : foundBridges(heard)) {
    object["bridges"].push_back({{"mac", bridge.mac}, {"address", bridge.address}});
  }
}

void addJsonText(Json& object, const HeardEvent& heard) {
  const auto* text = reinterpret_cast<const char*>(heard.event.payload);
  object["report"] = parsed(std::string(text, strnlen(text, sizeof heard.event.payload)));
}

void addNestWords(Json& object, const HeardEvent& heard) {
  object["words"] = payloadAs<std::array<int, 3>>(heard.event);
}

struct Details {
  Payload payload;
  void (*add)(Json& object, const HeardEvent& heard);
};

constexpr Details kDetails[] = {
    {Payload::kTimeout, addTimeout}, {Payload::kProgress, addProgress}, {Payload::kChoice, addChoice},
    {Payload::kCreated, addCreated}, {Payload::kRemoved, addRemoved},   {Payload::kBridges, addBridges},
    {Payload::kJson, addJsonText},   {Payload::kNest, addNestWords},
};

std::string choiceText(const HeardEvent& heard) {
  std::string text = ": " + typeName(createdType(heard)) + ", or choose";
  for (const DevType type : choices(deviceReport(heard))) text += " " + typeName(type);
  return text;
}

std::string timeoutText(const TimeoutReport& report) {
  return report.lastEventCode == 0 ? "" : " after " + words::eventName(report.lastEventCode);
}

std::string bridgesText(std::size_t count) {
  return ": " + std::to_string(count) + (count == 1 ? " bridge" : " bridges");
}

std::string nestText(const NestAnswer& answer) {
  return ": status " + std::to_string(answer.status) + ", value " + std::to_string(answer.value);
}

// The few words that tell one event from another of its code.
std::string particulars(const HeardEvent& heard) {
  const DeviceReport report = deviceReport(heard);
  switch (words::payloadOf(heard.event)) {
    case Payload::kChoice:
      return choiceText(heard);
    case Payload::kCreated:
      return ": " + fieldText(report.name) + " (" + typeName(createdType(heard)) + ")";
    case Payload::kRemoved:
      return ": " + fieldText(report.removedName) + " (id " + std::to_string(report.removedId) + ")";
    case Payload::kTimeout:
      return timeoutText(payloadAs<TimeoutReport>(heard.event));
    case Payload::kBridges:
      return bridgesText(foundBridges(heard).size());
    case Payload::kNest:
      return nestText(payloadAs<NestAnswer>(heard.event));
    default:
      return "";
  }
}

}  // namespace

DeviceReport deviceReport(const HeardEvent& heard) { return payloadAs<DeviceReport>(heard.event); }

std::vector<FoundBridge> foundBridges(const HeardEvent& heard) {
  const auto list = payloadAs<HueBridgeList>(heard.event);
  std::vector<FoundBridge> bridges;
  for (int i = 0; i < std::min(list.count, static_cast<int>(std::size(list.mac))); ++i) {
    bridges.push_back({fieldText(list.mac[i]), fieldText(list.address[i])});
  }
  return bridges;
}

std::vector<DevType> choices(const DeviceReport& report) {
  std::vector<DevType> types;
  for (const DevType type : report.subTypes) {
    if (type == DEVTYPE_UNKNOWN) break;
    types.push_back(type);
  }
  return types;
}

DevType createdType(const HeardEvent& heard) {
  const bool stale = heard.event.code == EVENT_CREATED && heard.event.source == SERVER_ZWAVE && heard.fromDatagram;
  return stale ? heard.proposedType : static_cast<DevType>(deviceReport(heard).type);
}

std::string describeEvent(const HeardEvent& heard) {
  const words::EventRow* row = words::findEvent(heard.event.code);
  const bool sourceKnown = row == nullptr || row->tellsSource;
  const std::string source = sourceKnown ? " from " + words::sourceName(heard.event.source) : "";
  return printable(words::eventName(heard.event.code) + source + particulars(heard));
}

Json eventJson(const HeardEvent& heard) {
  Json object = {{"event", words::eventName(heard.event.code)}, {"code", heard.event.code}};
  const words::EventRow* row = words::findEvent(heard.event.code);
  if (row == nullptr || row->tellsSource) object["source"] = words::sourceName(heard.event.source);
  const Payload payload = words::payloadOf(heard.event);
  for (const Details& details : kDetails) {
    if (details.payload == payload) details.add(object, heard);
  }
  return object;
}

// In ASCII: the other characters, some of which steer terminals, stand there as escapes.
std::string jsonLine(const Json& object) { return object.dump(-1, ' ', true, Json::error_handler_t::replace); }

}  // namespace tembra::cli
