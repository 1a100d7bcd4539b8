// tembra-assoc cancel: ends what another front end does; or, where none has the connection, adding and removing on the
// radios, which a front end that died may have left behind.
#include <tembra/assoc.h>
#include <tembra/frontend.h>
#include <tembra/service.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cerrno>
#include <iterator>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "cli/commands/commands.h"
#include "cli/commands/other_front_end.h"
#include "cli/commands/watched_line.h"
#include "cli/dialogue/library_call.h"
#include "cli/display/event_text.h"
#include "cli/display/json_line.h"
#include "cli/failure.h"
#include "cli/words/roles.h"

namespace tembra::cli {
namespace {

struct Target {
  cancel_type radios;
  std::vector<Radio> servers;
};

const std::map<std::string, Target> kTargets = {{"zigbee", {cancel_zigbee, {TEMBRA_RADIO_ZIGBEE}}},
                                                {"zwave", {cancel_zwave, {TEMBRA_RADIO_ZWAVE}}},
                                                {"both", {cancel_both, {TEMBRA_RADIO_ZIGBEE, TEMBRA_RADIO_ZWAVE}}}};

constexpr int kCancelMilliseconds = 3000;

struct Filling {
  std::string server;
  std::string error;
};

std::string replaced(std::string text, const std::string& mark, const std::string& value) {
  for (std::size_t at = text.find(mark); at != std::string::npos; at = text.find(mark, at + value.size())) {
    text.replace(at, mark.size(), value);
  }
  return text;
}

// The system's own words come last: whatever they hold is no mark.
std::string filled(const std::string& sentence, const Filling& filling) {
  const std::string why = filling.error.empty() ? "" : " (" + filling.error + ")";
  return replaced(replaced(replaced(sentence, "{holder}", ""), "{server}", filling.server), "{error}", why);
}

// The sentences of the kit, which has no operation for cancelling what nobody does.
Failure::Reason reasonOf(tembra_reason number, const Filling& filling = {}) {
  return {tembra_reason_name(number), filled(tembra_reason_text(number), filling),
          filled(tembra_reason_advice(number), filling)};
}

// ---- Where another front end has the connection ----

struct OtherEnd {
  std::string outcome;  // "cancelled", "done" or another one
  std::string advice;
};

std::optional<OtherEnd> endIn(const std::string& line) {
  const auto said = nlohmann::json::parse(line, nullptr, false);
  if (!said.is_object() || textOf(said, "event") != "ended") return std::nullopt;
  return OtherEnd{textOf(said, "outcome"), textOf(said, "advice")};
}

void awaitEnd(const Context& context, tembra_watch* watch, const std::string& what) {
  while (const char* line = tembra_watch_next(watch, kCancelMilliseconds)) {
    const auto end = endIn(line);
    if (!end) continue;
    if (context.options.json) printLine(line);
    if (end->outcome != "cancelled") throw Failure(kFailed, "the " + what + " had ended before.");
    context.display.note("Cancelled the " + what + "." + (end->advice.empty() ? "" : " " + end->advice));
    return;
  }
  throw Failure(kFailed, "the " + what + (errno == ECONNRESET ? " had ended before." : " was not cancelled in time."));
}

// False when there is nobody, or nothing to cancel.
bool cancelOther(const Context& context) {
  const std::string& path = context.options.watchPath;
  auto holder = tembra_holder{};
  holder.size = sizeof holder;
  if (tembra_read_holder(path.c_str(), kCancelMilliseconds, &holder) != 0) return false;
  const Watch watch{tembra_watch_open(path.c_str())};
  if (!watch || std::string(holder.operation) == "none" || tembra_watch_cancel(watch.get()) != 0) return false;
  if (context.options.json) printLine(statusEvent(&holder));
  awaitEnd(context, watch.get(), std::string(holder.operation) + " of " + holder.program);
  return true;
}

// ---- Where none has ----

struct Attempt {
  tembra_failure opening{};
  tembra_failure sending{};
  unsigned openingsBefore = 0;
  unsigned sendingsBefore = 0;
};

tembra_failure failureOf(tembra_failure_kind kind) {
  tembra_failure failure{};
  failure.size = sizeof failure;
  tembra_last_failure(kind, &failure);
  return failure;
}

void sendCancel(Attempt& attempt, TembraAssociation& service, cancel_type radios) {
  attempt.openingsBefore = failureOf(TEMBRA_FAILURE_OPENING).count;
  attempt.sendingsBefore = failureOf(TEMBRA_FAILURE_SEND).count;
  service.checkAssocConnection();
  attempt.opening = failureOf(TEMBRA_FAILURE_OPENING);
  if (attempt.opening.count != attempt.openingsBefore) return;
  service.sendCancelTo(radios);
  attempt.sending = failureOf(TEMBRA_FAILURE_SEND);
}

void throwUnlessSent(const Attempt& attempt) {
  if (attempt.opening.count != attempt.openingsBefore) {
    const int cause = attempt.opening.cause;
    const auto number = cause == TEMBRA_OPENING_IN_USE      ? TEMBRA_REASON_IN_USE
                        : cause == TEMBRA_OPENING_NO_MEMORY ? TEMBRA_REASON_NO_MEMORY
                        : cause == TEMBRA_OPENING_NO_THREAD ? TEMBRA_REASON_NO_THREAD
                                                            : TEMBRA_REASON_NO_SOCKET;
    throw Failure(kNoConnection, reasonOf(number, {"", attempt.opening.text}));
  }
  if (attempt.sending.count == attempt.sendingsBefore) return;
  throw Failure(kNoConnection, reasonOf(TEMBRA_REASON_NOT_SENT,
                                        {radioText(static_cast<Radio>(attempt.sending.server)), attempt.sending.text}));
}

// Nobody answers a cancel, so nobody would miss a server that does not run.
std::vector<Radio> listening(const Context& context, const std::vector<Radio>& wanted) {
  std::vector<Radio> servers;
  std::ranges::copy_if(wanted, std::back_inserter(servers), tembra_server_listens);
  if (servers.empty()) {
    throw Failure(kNoConnection, wanted.size() > 1 ? reasonOf(TEMBRA_REASON_NO_RADIO_SERVER)
                                                   : reasonOf(TEMBRA_REASON_NO_SERVER, {radioText(wanted[0]), ""}));
  }
  for (const Radio server : wanted) {
    if (std::ranges::find(servers, server) != servers.end()) continue;
    context.display.complain(reasonOf(TEMBRA_REASON_NO_SERVER, {radioText(server), ""}).text);
  }
  return servers;
}

void tellCancelled(const Context& context, const std::vector<Radio>& servers) {
  std::vector<std::string> names;
  std::ranges::transform(servers, std::back_inserter(names), radioText);
  if (context.options.json) return printLine(jsonEvent("cancelled", {{"radios", names}}));
  context.display.note("Cancelled adding and removing on " + names[0] + (names.size() > 1 ? " and " + names[1] : "") +
                       ".");
}

// Opening runs a command of the router, which may hang: the user need not.
void cancelRadios(const Context& context, const Target& target) {
  const std::vector<Radio> servers = listening(context, target.servers);
  TembraAssociation& service = *TembraAssociation::getInstance();
  service.clientRole = roleNumber(context.options.role);
  const auto attempt = std::make_shared<Attempt>();
  static_cast<void>(runLibraryCall(
      context, [attempt, &service, type = target.radios] { sendCancel(*attempt, service, type); },
      std::chrono::hours(1)));
  if (attempt->opening.cause != TEMBRA_OPENING_IN_USE) service.closeAssocConnection();
  throwUnlessSent(*attempt);
  tellCancelled(context, servers);
}

void cancel(const Context& context, const std::string& radios) {
  if (!cancelOther(context)) cancelRadios(context, kTargets.at(radios));
}

}  // namespace

void declareCancel(CLI::App& program, Action& action) {
  CLI::App* command = program.add_subcommand("cancel", "end what another front end does, or what the radios do");
  auto radios = std::make_shared<std::string>("both");
  command->add_option("radios", *radios, "zigbee, zwave or both, where no front end has the connection")
      ->check(CLI::IsMember(&kTargets))
      ->capture_default_str();
  command->callback([&action, radios] { action = [radios](const Context& context) { cancel(context, *radios); }; });
}

}  // namespace tembra::cli
