// tembra-assoc watch: opens the connection and shows events until Ctrl-C.
#include <CLI/CLI.hpp>

#include "commands.h"
#include "connection.h"

namespace tembra::cli {
namespace {

constexpr std::chrono::milliseconds kLongestWait{1000};

void watchEvents(const Context& context) {
  const Connection connection(context, serviceAs(context.options.role));
  context.display.note("Watching " + std::string(assoc_adr) + " until Ctrl-C.");
  bool open = true;
  while (open) {
    context.attention.waitForEvent(kLongestWait);
    open = connection.isOpen();
    while (const auto heard = fetchEvent()) context.display.event(*heard);
  }
  context.display.note(kClosedForWebServer);
}

}  // namespace

void declareWatch(CLI::App& program, Action& action) {
  CLI::App* command = program.add_subcommand("watch", "show events until Ctrl-C");
  command->callback([&action] { action = watchEvents; });
}

}  // namespace tembra::cli
