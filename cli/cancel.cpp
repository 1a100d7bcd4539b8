// tembra-assoc cancel: ends adding and removing on the radios, also when another front end began it.
#include <CLI/CLI.hpp>
#include <map>
#include <memory>
#include <string>

#include "commands.h"
#include "connection.h"
#include "servers.h"

namespace tembra::cli {
namespace {

struct Target {
  cancel_type type;
  std::vector<ServerType> servers;
};

const std::map<std::string, Target> kTargets = {
    {"zigbee", {cancel_zigbee, {SERVER_ZIGBEE}}},
    {"zwave", {cancel_zwave, {SERVER_ZWAVE}}},
    {"both", {cancel_both, {SERVER_ZIGBEE, SERVER_ZWAVE}}},
};

void cancel(const Context& context, const std::string& radios) {
  const Target& target = kTargets.at(radios);
  TembraAssociation& service = serviceAs(context.options.role);
  requireOneOf(target.servers);
  const Connection connection(context, service);
  context.display.command("sendCancelTo(" + radios + ")");
  Sending sending;
  service.sendCancelTo(target.type);
  sending.require();
  context.display.note("Cancelled adding and removing (" + radios + ").");
}

}  // namespace

void declareCancel(CLI::App& program, Action& action) {
  CLI::App* command = program.add_subcommand("cancel", "end adding and removing on the radios");
  auto radios = std::make_shared<std::string>("both");
  command->add_option("radios", *radios, "zigbee, zwave or both")
      ->check(CLI::IsMember(&kTargets))
      ->capture_default_str();
  command->callback([&action, radios] { action = [radios](const Context& context) { cancel(context, *radios); }; });
}

}  // namespace tembra::cli
