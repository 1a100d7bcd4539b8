#include "event_names.h"

#include <algorithm>
#include <array>

namespace tembra::words {
namespace {

constexpr std::string_view kRadios = "ZigBee, Z-Wave";

// The Nest server's numbers have no names, so nothing more can be said.
constexpr std::string_view kNestAnswered = "The Nest account was changed.";

constexpr auto kEvents = std::to_array<EventRow>({
    {EVENT_TIMEOUT, "TIMEOUT", "any", false, Payload::kTimeout, Ends::kYes, "the operation timed out and was cancelled",
     "Nothing answered in time. Please try again."},
    {EVENT_ADDING, "ADDING", kRadios, true, Payload::kProgress, Ends::kNo, "a device answered the add",
     "A device was found."},
    {EVENT_ALREADY_ADDED, "ALREADY_ADDED", "Z-Wave", true, Payload::kNone, Ends::kYes,
     "the device is already in the device list", "This device has been added before."},
    {EVENT_GETTING_INFO, "GETTING_INFO", kRadios, true, Payload::kProgress, Ends::kNo,
     "the device's description is being read", "The device describes itself. This takes up to three minutes."},
    {EVENT_SELECT_TYPE, "SELECT_TYPE", kRadios, true, Payload::kChoice, Ends::kNo, "the device's type is to be chosen",
     "What is this device used for?"},
    {EVENT_CREATED, "CREATED", kRadios, true, Payload::kCreated, Ends::kNo, "the device is ready to be named",
     "How should this device be called, and where is it?"},
    {EVENT_ADD_FAILED, "ADD_FAILED", kRadios, true, Payload::kProgress, Ends::kYes, "the add failed",
     "The device could not be added. Reset it and try again."},
    {EVENT_REMOVED, "REMOVED", kRadios, true, Payload::kRemoved, Ends::kLaterFromZwave,
     "a device of the device list leaves", "The device was removed."},
    {EVENT_REMOVED_UNKNOWN, "REMOVED_UNKNOWN", kRadios, true, Payload::kNone, Ends::kLaterFromZwave,
     "a device left that is not in the device list", "A device left that had not been added here."},
    {EVENT_HUE_BRIDGES, "HUE_BRIDGES", "Hue", true, Payload::kBridges, Ends::kNo, "Hue bridges were found",
     "These Hue bridges were found. Which one should be added?"},
    {EVENT_HUE_DONE, "HUE_DONE", "Hue", true, Payload::kJson, Ends::kYes, "the Hue server finished a command", "Done."},
    {EVENT_HUE_DONE_2, "HUE_DONE_2", "Hue", true, Payload::kJson, Ends::kYes, "the Hue server finished a command",
     "Done."},
    {EVENT_HUE_ADDED, "HUE_ADDED", "Hue", true, Payload::kJson, Ends::kYes, "a Hue bridge was added",
     "The Hue bridge and its bulbs were added."},
    {EVENT_HUE_BUTTON, "HUE_BUTTON", "Hue", true, Payload::kJson, Ends::kYes,
     "the bridge's link button was not pressed", "Press the round button on the Hue bridge, then try again."},
    {EVENT_HUE_NO_BRIDGE, "HUE_NO_BRIDGE", "Hue", true, Payload::kJson, Ends::kYes, "no Hue bridge was found",
     "No Hue bridge was found. Is it switched on and in the same network?"},
    {EVENT_HUE_UNKNOWN_BRIDGE, "HUE_UNKNOWN_BRIDGE", "Hue", true, Payload::kJson, Ends::kYes,
     "this bridge was not found", "This Hue bridge has not been added. Add the bridge first."},
    {EVENT_HUE_BULB_ADDED, "HUE_BULB_ADDED", "Hue", true, Payload::kJson, Ends::kYes, "a Hue bulb was added",
     "The Hue bulb was added."},
    {EVENT_HUE_FAILED, "HUE_FAILED", "Hue", false, Payload::kJson, Ends::kYes, "the Hue add failed",
     "The Hue bridge could not do this. Please try again."},
    {EVENT_NEST_41, "NEST_41", "Nest", true, Payload::kNone, Ends::kYes, "the Nest server answered command 121",
     kNestAnswered},
    {EVENT_NEST_42, "NEST_42", "Nest", true, Payload::kNone, Ends::kYes, "the Nest server answered command 123",
     kNestAnswered},
    {EVENT_NEST_43, "NEST_43", "Nest", true, Payload::kNone, Ends::kYes, "the Nest server answered command 122",
     kNestAnswered},
    {EVENT_NEST_44, "NEST_44", "Nest", true, Payload::kNest, Ends::kYes, "the Nest server answered command 100",
     kNestAnswered},
    {EVENT_NEST_45, "NEST_45", "Nest", true, Payload::kNone, Ends::kYes, "the Nest server answered command 124: done",
     kNestAnswered},
    {EVENT_NEST_46, "NEST_46", "Nest", true, Payload::kNone, Ends::kYes, "the Nest server answered command 124: failed",
     "The Nest account could not be changed. Please try again."},
});
static_assert(std::ranges::is_sorted(kEvents, {}, &EventRow::code), "rows stand in the order of their codes");

}  // namespace

std::span<const EventRow> eventTable() { return kEvents; }

const EventRow* findEvent(int code) {
  for (const EventRow& row : kEvents) {
    if (row.code == code) return &row;
  }
  return nullptr;
}

Payload payloadOf(const AssocEvent& event) {
  const EventRow* row = findEvent(event.code);
  if (row == nullptr) return Payload::kNone;
  const bool missing = row->payload == Payload::kProgress && event.source != SERVER_ZIGBEE;
  return missing ? Payload::kNone : row->payload;
}

}  // namespace tembra::words
