#include "connection.h"

#include <fcntl.h>
#include <tembra/service.h>

#include "event_inbox.h"
#include "failure.h"
#include "library_call.h"

namespace tembra::cli {
namespace {

constexpr std::chrono::milliseconds kPause{100};
constexpr int kLongestSettling = 1000;  // milliseconds; it takes a moment
constexpr char kNoConnectionBecause[] = "no connection: ";

struct Role {
  const char* name;
  TembraAssociation* (*initialise)();
};

constexpr Role kRoles[] = {
    {"web", TembraAssociation::webServerAssocInit},   {"lcd", TembraAssociation::LCDAssocInit},
    {"cloud", TembraAssociation::cloudappsAssocInit}, {"mesh", TembraAssociation::meshServerAssocInit},
    {"free1", TembraAssociation::FreeUsr1AssocInit},  {"free2", TembraAssociation::FreeUsr2AssocInit},
};

tembra_failure lastFailure(tembra_failure_kind kind) {
  tembra_failure failure{};
  failure.size = sizeof failure;
  tembra_last_failure(kind, &failure);
  return failure;
}

std::string sentenceFor(const tembra_failure& opening) {
  switch (opening.cause) {
    case TEMBRA_OPENING_IN_USE:
      return std::string(assoc_adr) + " is in use, so another front end has it open.";
    case TEMBRA_OPENING_NO_THREAD:
      return std::string("the library has no thread to receive with (") + opening.text + ").";
    case TEMBRA_OPENING_REPLACED:
      return std::string(assoc_adr) + " was closed again at once.";
    default:
      return std::string(assoc_adr) + " cannot be opened: " + opening.text + ".";
  }
}

// Nothing when it worked. Opening runs a command of the router, which may hang.
std::optional<tembra_failure> tryToOpen(const Context& context, TembraAssociation& service) {
  const unsigned before = lastFailure(TEMBRA_FAILURE_OPENING).count;
  try {
    runLibraryCall([&service] { service.checkAssocConnection(); }, [&context] { context.attention.pause(kPause); });
  } catch (const Failure& failure) {
    throw Failure(kNoConnection, std::string(kNoConnectionBecause) + failure.what());
  }
  const tembra_failure failure = lastFailure(TEMBRA_FAILURE_OPENING);
  return failure.count == before ? std::nullopt : std::optional(failure);
}

// The library takes a command that the shell does not find for one that answers nothing.
void complainOfMissingCommand(ErrorCapture& errors) {
  const auto why = errors.take("sh: ", "nvram_get: ");
  if (!why) return;
  complain("the router's command nvram_get cannot be run (" + *why +
           "), so the router counts as number 0 of its mesh.");
}

}  // namespace

std::vector<std::string> roleNames() {
  std::vector<std::string> names;
  for (const Role& role : kRoles) names.emplace_back(role.name);
  return names;
}

TembraAssociation& serviceAs(const std::string& role) {
  for (const Role& each : kRoles) {
    if (role == each.name) return *each.initialise();
  }
  throw Failure(kUsage, "there is no role " + role + ".");
}

Connection::Connection(const Context& context, TembraAssociation& service) : service_(service), socket_(-1) {
  service_.registerAssocEventCB(hearEvent);
  ErrorCapture errors;
  const auto failure = tryToOpen(context, service);
  complainOfMissingCommand(errors);
  if (failure) {
    errors.take(failure->text, ": libTembraAssoc:");
    if (failure->cause == TEMBRA_OPENING_NO_THREAD) service_.closeAssocConnection();
    throw Failure(kNoConnection, kNoConnectionBecause + sentenceFor(*failure));
  }
  socket_ = service_.sock;
  // What the library writes from here on comes after that read, and its first wait can be told.
  tembra_settle(kLongestSettling);
}

Connection::~Connection() { service_.closeAssocConnection(); }

Sending::Sending() : failuresBefore_(lastFailure(TEMBRA_FAILURE_SEND).count) {}

std::optional<std::string> Sending::failure() {
  errors_.take("sendto error", ": ");
  const tembra_failure failure = lastFailure(TEMBRA_FAILURE_SEND);
  return failure.count == failuresBefore_ ? std::nullopt : std::optional<std::string>(failure.text);
}

void Sending::require() {
  const auto why = failure();
  if (why) throw Failure(kNoConnection, kNoConnectionBecause + ("nothing can be sent (" + *why + ")."));
}

bool Connection::isOpen() const { return fcntl(socket_, F_GETFD) >= 0; }

}  // namespace tembra::cli
