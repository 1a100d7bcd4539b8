#include "event_names.h"

#include <algorithm>
#include <array>

namespace tembra::frontend {
namespace {

constexpr std::string_view kRadios = "ZigBee, Z-Wave";

constexpr auto kEvents = std::to_array<EventRow>({
    {EVENT_TIMEOUT, "TIMEOUT", "any", false, Payload::kTimeout, "the operation timed out and was cancelled"},
    {EVENT_ADDING, "ADDING", kRadios, true, Payload::kProgress, "a device answered the add"},
    {EVENT_ALREADY_ADDED, "ALREADY_ADDED", "Z-Wave", true, Payload::kNone, "the device is already in the device list"},
    {EVENT_GETTING_INFO, "GETTING_INFO", kRadios, true, Payload::kProgress, "the device's description is being read"},
    {EVENT_SELECT_TYPE, "SELECT_TYPE", kRadios, true, Payload::kChoice, "the device's type is to be chosen"},
    {EVENT_CREATED, "CREATED", kRadios, true, Payload::kCreated, "the device is ready to be named"},
    {EVENT_ADD_FAILED, "ADD_FAILED", kRadios, true, Payload::kProgress, "the add failed"},
    {EVENT_REMOVED, "REMOVED", kRadios, true, Payload::kRemoved, "a device of the device list leaves"},
    {EVENT_REMOVED_UNKNOWN, "REMOVED_UNKNOWN", kRadios, true, Payload::kNone,
     "a device left that is not in the device list"},
    {EVENT_HUE_BRIDGES, "HUE_BRIDGES", "Hue", true, Payload::kBridges, "Hue bridges were found"},
    {EVENT_HUE_DONE, "HUE_DONE", "Hue", true, Payload::kJson, "the Hue server finished a command"},
    {EVENT_HUE_DONE_2, "HUE_DONE_2", "Hue", true, Payload::kJson, "the Hue server finished a command"},
    {EVENT_HUE_ADDED, "HUE_ADDED", "Hue", true, Payload::kJson, "a Hue bridge was added"},
    {EVENT_HUE_BUTTON, "HUE_BUTTON", "Hue", true, Payload::kJson, "the bridge's link button was not pressed"},
    {EVENT_HUE_NO_BRIDGE, "HUE_NO_BRIDGE", "Hue", true, Payload::kJson, "no Hue bridge was found"},
    {EVENT_HUE_UNKNOWN_BRIDGE, "HUE_UNKNOWN_BRIDGE", "Hue", true, Payload::kJson, "this bridge was not found"},
    {EVENT_HUE_BULB_ADDED, "HUE_BULB_ADDED", "Hue", true, Payload::kJson, "a Hue bulb was added"},
    {EVENT_HUE_FAILED, "HUE_FAILED", "Hue", false, Payload::kJson, "the Hue add failed"},
    {EVENT_NEST_41, "NEST_41", "Nest", true, Payload::kNone, "the Nest server answered command 121"},
    {EVENT_NEST_42, "NEST_42", "Nest", true, Payload::kNone, "the Nest server answered command 123"},
    {EVENT_NEST_43, "NEST_43", "Nest", true, Payload::kNone, "the Nest server answered command 122"},
    {EVENT_NEST_44, "NEST_44", "Nest", true, Payload::kNest, "the Nest server answered command 100"},
    {EVENT_NEST_45, "NEST_45", "Nest", true, Payload::kNone, "the Nest server answered command 124: done"},
    {EVENT_NEST_46, "NEST_46", "Nest", true, Payload::kNone, "the Nest server answered command 124: failed"},
});
static_assert(std::ranges::is_sorted(kEvents, {}, &EventRow::code), "rows stand in the order of their codes");

constexpr std::array<std::string_view, 5> kSources = {"", "ZigBee", "Z-Wave", "Hue", "Nest"};

}  // namespace

std::span<const EventRow> eventTable() { return kEvents; }

const EventRow* findEvent(int code) {
  for (const EventRow& row : kEvents) {
    if (row.code == code) return &row;
  }
  return nullptr;
}

std::string eventName(int code) {
  const EventRow* row = findEvent(code);
  return row == nullptr ? "UNKNOWN " + std::to_string(code) : std::string(row->name);
}

std::string sourceName(int source) {
  const bool named = source > 0 && source < static_cast<int>(kSources.size());
  return named ? std::string(kSources[static_cast<std::size_t>(source)]) : "server " + std::to_string(source);
}

Payload payloadOf(const AssocEvent& event) {
  const EventRow* row = findEvent(event.code);
  if (row == nullptr) return Payload::kNone;
  const bool missing = row->payload == Payload::kProgress && event.source != SERVER_ZIGBEE;
  return missing ? Payload::kNone : row->payload;
}

}  // namespace tembra::frontend
