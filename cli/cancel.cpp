// tembra-assoc cancel: ends what another front end does; or, where none has the connection, adding and removing on the
// radios, which a front end that died may have left behind.
#include <tembra/assoc.h>
#include <tembra/service.h>

#include <CLI/CLI.hpp>
#include <cerrno>
#include <cstring>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>

#include "commands.h"
#include "failure.h"
#include "library_call.h"
#include "other_front_end.h"
#include "roles.h"

namespace tembra::cli {
namespace {

const std::map<std::string, cancel_type> kTargets = {
    {"zigbee", cancel_zigbee}, {"zwave", cancel_zwave}, {"both", cancel_both}};

constexpr int kAnswerMilliseconds = 3000;

// "cancelled", "done" or another outcome; empty: the line is no end.
std::string outcomeIn(const std::string& line) {
  const auto said = nlohmann::json::parse(line, nullptr, false);
  const bool isEnd = said.is_object() && said.value("event", "") == "ended";
  return isEnd ? said.value("outcome", "") : "";
}

// False when there is nobody, or nothing to cancel.
bool cancelOther(const Context& context) {
  const std::string& path = context.options.watchPath;
  auto holder = tembra_holder{};
  holder.size = sizeof holder;
  if (tembra_read_holder(path.c_str(), kAnswerMilliseconds, &holder) != 0) return false;
  const Watch watch{tembra_watch_open(path.c_str())};
  if (!watch || std::string(holder.operation) == "none" || tembra_watch_cancel(watch.get()) != 0) return false;
  const std::string what = std::string(holder.operation) + " of " + holder.program;
  while (const char* line = tembra_watch_next(watch.get(), kAnswerMilliseconds)) {
    const std::string outcome = outcomeIn(line);
    if (outcome.empty()) continue;
    if (outcome != "cancelled") throw Failure(kFailed, "the " + what + " had ended before.");
    context.display.note("Cancelled the " + what + ".");
    return true;
  }
  throw Failure(kFailed, "the " + what + (errno == ECONNRESET ? " had ended before." : " was not cancelled in time."));
}

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

void cancelOnRadios(Attempt& attempt, TembraAssociation& service, cancel_type radios) {
  attempt.openingsBefore = failureOf(TEMBRA_FAILURE_OPENING).count;
  attempt.sendingsBefore = failureOf(TEMBRA_FAILURE_SEND).count;
  service.checkAssocConnection();
  attempt.opening = failureOf(TEMBRA_FAILURE_OPENING);
  if (attempt.opening.count != attempt.openingsBefore) return;
  service.sendCancelTo(radios);
  attempt.sending = failureOf(TEMBRA_FAILURE_SEND);
}

std::string reason(tembra_reason number, const tembra_failure& failure) {
  const std::string why = failure.text[0] == '\0' ? "" : std::string(" (") + failure.text + ")";
  std::string text = tembra_reason_text(number);
  for (const auto& [mark, value] : {std::pair{"{error}", why}, {"{holder}", std::string()}}) {
    if (const std::size_t at = text.find(mark); at != std::string::npos) text.replace(at, std::strlen(mark), value);
  }
  return text + " " + tembra_reason_advice(number);
}

void throwUnlessDone(const Attempt& attempt) {
  if (attempt.opening.count != attempt.openingsBefore) {
    const int cause = attempt.opening.cause;
    const auto number = cause == TEMBRA_OPENING_IN_USE      ? TEMBRA_REASON_IN_USE
                        : cause == TEMBRA_OPENING_NO_THREAD ? TEMBRA_REASON_NO_THREAD
                                                            : TEMBRA_REASON_NO_SOCKET;
    throw Failure(kNoConnection, reason(number, attempt.opening));
  }
  if (attempt.sending.count == attempt.sendingsBefore) return;
  const std::string why = attempt.sending.text;
  throw Failure(kNoConnection, "Nothing can be sent to the radio servers (" + why + ").");
}

// Opening runs a command of the router, which may hang: the user need not.
void cancelRadios(const Context& context, const std::string& radios) {
  TembraAssociation& service = *TembraAssociation::getInstance();
  service.clientRole = roleNumber(context.options.role);
  const auto attempt = std::make_shared<Attempt>();
  static_cast<void>(runLibraryCall(
      context, [attempt, &service, type = kTargets.at(radios)] { cancelOnRadios(*attempt, service, type); },
      std::chrono::hours(1)));
  if (attempt->opening.cause != TEMBRA_OPENING_IN_USE) service.closeAssocConnection();
  throwUnlessDone(*attempt);
  context.display.note("Cancelled adding and removing (" + radios + ").");
}

void cancel(const Context& context, const std::string& radios) {
  if (!cancelOther(context)) cancelRadios(context, radios);
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
