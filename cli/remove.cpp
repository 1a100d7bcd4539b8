// tembra-assoc remove: the next device whose button is pressed leaves the home.
#include <tembra/globals.h>

#include <CLI/CLI.hpp>

#include "commands.h"
#include "database_file.h"
#include "event_report.h"
#include "failure.h"
#include "operation.h"
#include "questions.h"
#include "servers.h"
#include "texts.h"

namespace tembra::cli {
namespace {

// The event that tells which device leaves. Throws Failure when none comes.
HeardEvent waitForRemoval(Operation& operation) {
  operation.waitsFor("Press the button of the device to remove");
  while (true) {
    HeardEvent heard = operation.nextEvent();
    if (heard.event.code == EVENT_REMOVED || heard.event.code == EVENT_REMOVED_UNKNOWN) return heard;
    if (heard.event.code != EVENT_TIMEOUT) continue;
    operation.ended();
    throw Failure(kFailed, "no device answered the removal in time.");
  }
}

// A radio may still have something to do; what it does is told by no event. False when it does not end in time.
bool waitForRadio(Operation& operation) {
  operation.waitsFor("Waiting until the radio confirms");
  while (const auto heard = operation.eventBeforeIdle()) {
    if (heard->event.code != EVENT_TIMEOUT) continue;
    operation.ended();
    return false;
  }
  operation.ended();
  return true;
}

void removeDevice(const Context& context) {
  TembraAssociation& service = serviceAs(context.options.role);
  confirm(context, "The next device whose button is pressed leaves the home and the device list.");
  requireOneOf({SERVER_ZIGBEE, SERVER_ZWAVE});
  requireOneOf({SERVER_HA});
  checkBeforeLibraryOpens(DBName);
  const Connection connection(context, service);
  Operation operation(context, service);
  operation.start(&TembraAssociation::removeDevZigbeeZwave, "removeDevZigbeeZwave()");
  const HeardEvent heard = waitForRemoval(operation);
  const bool confirmed = waitForRadio(operation);
  if (heard.event.code == EVENT_REMOVED_UNKNOWN) {
    throw Failure(kFailed, "the device that answered is not in the device list; nothing was dropped from it.");
  }
  const DeviceReport report = deviceReport(heard);
  const std::string device = fieldText(report.removedName) + " (id " + std::to_string(report.removedId) + ")";
  if (!confirmed) throw Failure(kFailed, device + " left the device list, but the radio did not confirm its removal.");
  context.display.note("Removed " + device + ".");
}

}  // namespace

void declareRemove(CLI::App& program, Action& action) {
  CLI::App* command = program.add_subcommand("remove", "remove a device: press its button when told to");
  command->callback([&action] { action = removeDevice; });
}

}  // namespace tembra::cli
