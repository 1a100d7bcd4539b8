// tembra-assoc watch: opens the connection and shows events until Ctrl-C.
#include <CLI/CLI.hpp>

#include "commands.h"
#include "connection.h"

namespace tembra::cli {
namespace {

constexpr std::chrono::milliseconds kLongestWait{1000};

// The library closes the web server's connection after an answer from a server that is no radio.
bool closesConnection(const Context& context, const AssocEvent& event) {
  return context.options.role == "web" && (event.source == SERVER_HUE || event.source == SERVER_NEST);
}

void watchEvents(const Context& context) {
  const Connection connection(context, serviceAs(context.options.role));
  context.display.note("Watching " + std::string(assoc_adr) + " until Ctrl-C.");
  while (true) {
    context.attention.waitForEvent(kLongestWait);
    while (const auto heard = fetchEvent()) {
      context.display.event(*heard);
      if (closesConnection(context, heard->event)) {
        context.display.note("The library has closed the connection, as it does for the web server.");
        return;
      }
    }
  }
}

}  // namespace

void declareWatch(CLI::App& program, Action& action) {
  CLI::App* command = program.add_subcommand("watch", "show events until Ctrl-C");
  command->callback([&action] { action = watchEvents; });
}

}  // namespace tembra::cli
