// tembra-assoc add: the next device whose button is pressed joins the home.
#include <tembra/globals.h>

#include <CLI/CLI.hpp>
#include <memory>
#include <string>

#include "add_outcome.h"
#include "commands.h"
#include "database_file.h"
#include "device_types.h"
#include "new_device.h"
#include "servers.h"

namespace tembra::cli {
namespace {

// The event that hands the device over to be named. Throws Failure when none comes.
HeardEvent waitForDevice(Operation& operation) {
  operation.waitsFor("Press the button of the device to add");
  while (true) {
    HeardEvent heard = operation.nextEvent();
    throwIfAddEnded(operation, heard);
    switch (heard.event.code) {
      case EVENT_SELECT_TYPE:
      case EVENT_CREATED:
        return heard;
      case EVENT_ADDING:
        operation.waitsFor("A device answers");
        break;
      case EVENT_GETTING_INFO:
        operation.waitsFor("Reading the device's description");
        break;
      default:
        break;
    }
  }
}

void addDevice(const Context& context, const Wishes& wishes) {
  TembraAssociation& service = serviceAs(context.options.role);
  requireOneOf({SERVER_ZIGBEE, SERVER_ZWAVE});
  requireOneOf({SERVER_HA});
  checkBeforeLibraryOpens(DBName);
  const Connection connection(context, service);
  Operation operation(context, service);
  operation.start(&TembraAssociation::addDevZigbeeZwave, "addDevZigbeeZwave()");
  const HeardEvent created = waitForDevice(operation);
  finishDevice(operation, created, wishes);
}

std::string checkType(const std::string& text) {
  return parseType(text) ? "" : text + " is neither the name nor the number of a device type";
}

}  // namespace

void declareAdd(CLI::App& program, Action& action) {
  CLI::App* command = program.add_subcommand("add", "add a device: press its button when told to");
  auto wishes = std::make_shared<Wishes>();
  command
      ->add_option_function<std::string>(
          "--type", [wishes](const std::string& text) { wishes->type = parseType(text); },
          "the device's type, by name or number, where there is a choice")
      ->check(checkType);
  command->add_option("--name", wishes->name, "the device's name, instead of the one proposed");
  command->add_option("--location", wishes->location, "where the device is, instead of \"Default\"");
  command->callback([&action, wishes] { action = [wishes](const Context& context) { addDevice(context, *wishes); }; });
}

}  // namespace tembra::cli
