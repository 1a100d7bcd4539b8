// tembra-assoc devices: the device list, without asking any server.
#include <tembra/globals.h>

#include <CLI/CLI.hpp>
#include <iostream>
#include <nlohmann/json.hpp>

#include "commands.h"
#include "device_list.h"
#include "event_report.h"
#include "failure.h"

namespace tembra::cli {
namespace {

void listDevices(const Context& context) {
  const DeviceList list = readDevices(DBName);
  if (context.options.json) {
    for (const Device& device : list.devices) printLine(jsonLine(deviceJson(device)));
  } else {
    std::cout << deviceTable(list.devices) << std::flush;
  }
  if (list.isComplete) return;
  throw Failure(
      kFailed, "the device database " + std::string(DBName) + " is damaged: there may be devices that cannot be read.");
}

}  // namespace

void declareDevices(CLI::App& program, Action& action) {
  CLI::App* command = program.add_subcommand("devices", "list the devices of the device database");
  command->callback([&action] { action = listDevices; });
}

}  // namespace tembra::cli
