#include "new_device.h"

#include <algorithm>

#include "add_outcome.h"
#include "device_types.h"
#include "event_report.h"
#include "failure.h"
#include "platform/printable.h"
#include "questions.h"
#include "texts.h"

namespace tembra::cli {
namespace {

// What the device's record holds of a name or a location; a longer one would run into the next field.
std::size_t longestText(int radio) { return radio == SERVER_ZIGBEE ? 31 : 179; }

void checkEvents(Operation& operation) {
  while (const auto heard = operation.eventSoFar()) throwIfAddEnded(operation, *heard);
}

std::string joined(const std::vector<DevType>& types) {
  std::string text;
  for (const DevType type : types) text += (text.empty() ? "" : ", ") + typeName(type);
  return text;
}

DevType askType(Operation& operation, const std::vector<DevType>& types) {
  std::vector<std::string> names;
  std::ranges::transform(types, std::back_inserter(names), typeName);
  const std::size_t index = askChoice(
      operation.context(), "What is the device? At most " + std::to_string(operation.secondsLeft()) + " s left.", names,
      [&operation] { checkEvents(operation); });
  return types[index];
}

DevType chooseType(Operation& operation, const HeardEvent& created, const Wishes& wishes) {
  const Options& options = operation.context().options;
  const bool choice = created.event.code == EVENT_SELECT_TYPE;
  const std::vector<DevType> types = choice ? choices(deviceReport(created)) : std::vector{createdType(created)};
  if (wishes.type) {
    if (std::ranges::find(types, *wishes.type) != types.end()) return *wishes.type;
    throw Failure(kFailed, "the device cannot be a " + typeName(*wishes.type) + "; possible: " + joined(types) + ".");
  }
  if (!choice || types.empty()) return createdType(created);
  if (options.mayAsk()) return askType(operation, types);
  if (options.yes) return types.front();
  throw Failure(kFailed,
                "the device's type must be chosen with --type (or --yes for the first): " + joined(types) + ".");
}

// Gives the device its type; the library answers with the name and location that it proposes.
DeviceReport confirmType(Operation& operation, DevType type) {
  operation.waitsFor("Looking up the device's number");
  operation.letLibrarySettle();
  operation.run("setDevType(" + std::to_string(type) + " " + typeName(type) + ")",
                [type](TembraAssociation& service) { service.setDevType(type); });
  std::optional<DeviceReport> proposal;
  while (const auto heard = operation.eventSoFar()) {
    throwIfAddEnded(operation, *heard);
    if (heard->event.code == EVENT_CREATED && !heard->fromDatagram) proposal = deviceReport(*heard);
  }
  if (!proposal) throw Failure(kFailed, "the library did not confirm the device's type.");
  return *proposal;
}

std::string fitted(Operation& operation, const std::string& text, int radio, const std::string& what) {
  std::string fitting = cutText(text, longestText(radio));
  if (fitting != text) {
    operation.context().display.makeRoom();
    complain("the " + what + " was cut to the " + std::to_string(fitting.size()) +
             " bytes that the device's record holds.");
  }
  return fitting;
}

std::string decide(Operation& operation, const std::string& what, const std::string& wish,
                   const std::string& proposal) {
  if (!wish.empty()) return wish;
  if (!operation.context().options.mayAsk()) return proposal;
  const std::string question = what + " (at most " + std::to_string(operation.secondsLeft()) + " s left)";
  return askText(operation.context(), question, printable(proposal), [&operation] { checkEvents(operation); });
}

void handOver(Operation& operation) {
  checkEvents(operation);
  operation.context().display.command("addingDone()");
  Sending sending;
  const int result = operation.service().addingDone();
  operation.ended();
  const auto why = sending.failure();
  const std::string reason = why ? " (" + *why + ")" : "";
  if (result != 0)
    throw Failure(kFailed, "the device could not be handed to the home-automation server" + reason + ".");
}

}  // namespace

void finishDevice(Operation& operation, const HeardEvent& created, const Wishes& wishes) {
  const int radio = created.event.source;
  const DevType type = chooseType(operation, created, wishes);
  const DeviceReport proposal = confirmType(operation, type);
  Display& display = operation.context().display;
  const std::string wantedName = decide(operation, "Name", wishes.name, fieldText(proposal.name));
  std::string name = fitted(operation, wantedName, radio, "name");
  const std::string wantedLocation = decide(operation, "Location", wishes.location, fieldText(proposal.location));
  std::string location = fitted(operation, wantedLocation, radio, "location");
  display.command("setDevName(" + name + ")");
  operation.service().setDevName(name.data());
  display.command("setDevLocation(" + location + ")");
  operation.service().setDevLocation(location.data());
  handOver(operation);
  display.note("Added " + name + " (" + typeName(type) + ", " + location + ").");
}

}  // namespace tembra::cli
