#include "cli/display/event_text.h"

#include <algorithm>

#include "platform/printable.h"

namespace tembra::cli {
namespace {

struct Awaited {
  Operation operation;  ///< TEMBRA_OPERATION_NONE: any
  Phase phase;
  const char* text;
};

// The first row that fits.
constexpr Awaited kAwaited[] = {
    {TEMBRA_OPERATION_ADD, TEMBRA_PHASE_BUTTON, "Press the button of the device to add"},
    {TEMBRA_OPERATION_REMOVE, TEMBRA_PHASE_BUTTON, "Press the button of the device to remove"},
    {TEMBRA_OPERATION_HUE_DISCOVER, TEMBRA_PHASE_ANSWER, "Looking for Hue bridges"},
    {TEMBRA_OPERATION_HUE_ADD_BULB, TEMBRA_PHASE_ANSWER, "Adding the bulb"},
    {TEMBRA_OPERATION_HUE_REFRESH, TEMBRA_PHASE_ANSWER, "Refreshing the Hue bridge"},
    {TEMBRA_OPERATION_HUE_REMOVE, TEMBRA_PHASE_ANSWER, "Removing the Hue bridge"},
    {TEMBRA_OPERATION_NEST_LINK, TEMBRA_PHASE_ANSWER, "Linking the Nest account"},
    {TEMBRA_OPERATION_NEST_UNLINK, TEMBRA_PHASE_ANSWER, "Unlinking the Nest account"},
    {TEMBRA_OPERATION_NONE, TEMBRA_PHASE_OPENING, "Opening the connection"},
    {TEMBRA_OPERATION_NONE, TEMBRA_PHASE_IDENTITY, "A device answers"},
    {TEMBRA_OPERATION_NONE, TEMBRA_PHASE_DESCRIPTION, "Reading the device's description"},
    {TEMBRA_OPERATION_NONE, TEMBRA_PHASE_STORING, "Storing the device"},
    {TEMBRA_OPERATION_NONE, TEMBRA_PHASE_LEAVING, "Waiting until the radio confirms"},
    {TEMBRA_OPERATION_NONE, TEMBRA_PHASE_ANSWER, "Waiting for the answer"},
    {TEMBRA_OPERATION_NONE, TEMBRA_PHASE_LINK_BUTTON, "Press the round link button on top of the Hue bridge"},
    {TEMBRA_OPERATION_NONE, TEMBRA_PHASE_RESETTING, "Resetting"},
    {TEMBRA_OPERATION_NONE, TEMBRA_PHASE_LEAVE_BUTTON, "Press the button of the known device, so that it leaves"},
    {TEMBRA_OPERATION_NONE, TEMBRA_PHASE_EMPTYING, "Emptying the device list"},
    {TEMBRA_OPERATION_NONE, TEMBRA_PHASE_DATABASE, "Reading the device list"},
};

std::string foundText(const Event& event, const Found& found) {
  std::string text = "Found a device on " + radioText(event.radio) + ": " + typeName(found.type);
  for (std::size_t i = 1; i < found.choices.size(); ++i) {
    text += (i == 1 ? ", or " : ", ") + typeName(found.choices[i]);
  }
  return text + ".";
}

std::string bridgesText(const Bridges& list, bool fromDatabase) {
  if (list.bridges.empty())
    return fromDatabase ? "There are no Hue bridges in the device list." : "No Hue bridge was found.";
  std::string text = fromDatabase ? "Bridge             User" : "";
  for (const Bridge& bridge : list.bridges) {
    if (!text.empty()) text += '\n';
    text += fromDatabase ? printable(bridge.mac) + "  " + printable(bridge.user)
                         : "Found the Hue bridge " + printable(bridge.mac) + " at " + printable(bridge.address) + ".";
  }
  return text;
}

}  // namespace

std::string numberedName(const std::string& name, int id) { return name + " (id " + std::to_string(id) + ")"; }

std::string radioText(Radio radio) { return tembra_radio_name(radio); }

std::string awaitedText(Operation operation, Phase phase) {
  const auto* row = std::ranges::find_if(kAwaited, [operation, phase](const Awaited& each) {
    return each.phase == phase && (each.operation == operation || each.operation == TEMBRA_OPERATION_NONE);
  });
  return row == std::end(kAwaited) ? "" : row->text;
}

std::string eventText(const Event& event) {
  if (event.as<Waiting>() != nullptr && event.operation == TEMBRA_OPERATION_HUE_ADD_BRIDGE) {
    return awaitedText(event.operation, TEMBRA_PHASE_LINK_BUTTON) + ".";
  }
  if (event.as<Waiting>() != nullptr) return awaitedText(event.operation, event.phase) + ".";
  if (event.as<Answered>() != nullptr) return "A device answers on " + radioText(event.radio) + ".";
  if (event.as<Reading>() != nullptr) return "Reading the device's description.";
  if (const auto* found = event.as<Found>()) return foundText(event, *found);
  if (const auto* added = event.as<Added>()) {
    return "Added " + printable(added->name) + " (" + typeName(added->type) + ", " + printable(added->place) + ").";
  }
  if (const auto* removing = event.as<Removing>()) {
    return printable(numberedName(removing->name, removing->id)) + " leaves.";
  }
  if (const auto* removed = event.as<Removed>()) {
    return "Removed " + printable(numberedName(removed->name, removed->id)) + ".";
  }
  if (const auto* list = event.as<Bridges>()) return bridgesText(*list, event.operation == TEMBRA_OPERATION_HUE_LIST);
  if (const auto* account = event.as<Account>()) {
    if (event.operation == TEMBRA_OPERATION_NEST_LINK) return "Linked the Nest account.";
    if (event.operation == TEMBRA_OPERATION_NEST_UNLINK) return "Unlinked the Nest account.";
    return account->linked ? "A Nest account is linked." : "No Nest account is linked.";
  }
  return "";
}

std::string endText(const Ended& ended) { return ended.text + (ended.advice.empty() ? "" : " " + ended.advice); }

}  // namespace tembra::cli
