// tembra-assoc reset: makes the radios forget their devices.
#include <CLI/CLI.hpp>
#include <map>
#include <memory>
#include <string>

#include "commands.h"
#include "connection.h"
#include "library_call.h"
#include "questions.h"
#include "servers.h"

namespace tembra::cli {
namespace {

using std::chrono::steady_clock;

constexpr std::chrono::milliseconds kPausePerLook{100};

struct ResetTarget {
  reset_type type;
  std::vector<ServerType> servers;
  std::chrono::seconds takes;  ///< how long the library waits for the radios to come back
  const char* consequence;
};

const std::map<std::string, ResetTarget> kResetTargets = {
    {"zigbee", {reset_zigbee, {SERVER_ZIGBEE}, std::chrono::seconds{9}, "The ZigBee network forgets its devices."}},
    {"zwave", {reset_zwave, {SERVER_ZWAVE}, std::chrono::seconds{7}, "The Z-Wave network forgets its devices."}},
    {"both",
     {reset_both, {SERVER_ZIGBEE, SERVER_ZWAVE}, std::chrono::seconds{9}, "Both radio networks forget their devices."}},
    {"all",
     {reset_both_and_remove_all,
      {SERVER_ZIGBEE, SERVER_ZWAVE},
      std::chrono::seconds{9},
      "Both radio networks forget their devices and the device list is emptied."}},
};

/// Shows the seconds left. A reset that has begun cannot be taken back and must not stop half-way, so only a second
/// Ctrl-C leaves at once.
class ResetProgress {
 public:
  ResetProgress(const Context& context, std::chrono::seconds takes)
      : context_(context), end_(steady_clock::now() + takes) {}

  void wait() {
    const auto left = std::chrono::ceil<std::chrono::seconds>(end_ - steady_clock::now());
    context_.display.waiting("resetting", static_cast<int>(std::max(left, std::chrono::seconds{0}).count()));
    try {
      context_.attention.pause(kPausePerLook);
    } catch (const Interrupted&) {
      if (interrupted_) throw;
      interrupted_ = true;
      context_.display.note("The reset cannot be taken back; it ends in a moment. Ctrl-C again leaves at once.");
    }
  }

  [[nodiscard]] bool wasInterrupted() const { return interrupted_; }

 private:
  const Context& context_;
  steady_clock::time_point end_;
  bool interrupted_ = false;
};

void reset(const Context& context, const std::string& radios) {
  const ResetTarget& target = kResetTargets.at(radios);
  TembraAssociation& service = serviceAs(context.options.role);
  confirm(context, target.consequence);
  requireOneOf(target.servers);
  if (target.type == reset_both_and_remove_all) requireOneOf({SERVER_HA});
  complainOfMissing(target.servers);
  const Connection connection(context, service);
  context.display.command("doResetFor(" + radios + ")");
  ResetProgress progress(context, target.takes);
  Sending sending;
  runLibraryCall([&service, &target] { service.doResetFor(target.type); }, [&progress] { progress.wait(); });
  sending.require();
  context.display.note("Reset " + radios + ".");
  if (progress.wasInterrupted()) throw Interrupted{};
}

}  // namespace

void declareReset(CLI::App& program, Action& action) {
  CLI::App* command = program.add_subcommand("reset", "reset the radio networks; all: empty the device list as well");
  auto radios = std::make_shared<std::string>();
  command->add_option("radios", *radios, "zigbee, zwave, both or all")
      ->check(CLI::IsMember(&kResetTargets))
      ->required();
  command->callback([&action, radios] { action = [radios](const Context& context) { reset(context, *radios); }; });
}

}  // namespace tembra::cli
