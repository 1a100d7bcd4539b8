#include "connection.h"

#include <fcntl.h>

#include <cerrno>
#include <cstring>
#include <memory>

#include "event_inbox.h"
#include "failure.h"
#include "library_call.h"
#include "log_capture.h"

namespace tembra::cli {
namespace {

constexpr std::chrono::milliseconds kPause{100};
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

std::string whyNotOpen(int error) {
  if (error == EADDRINUSE) return std::string(assoc_adr) + " is in use, so another front end has it open.";
  return std::string(assoc_adr) + " cannot be opened: " + std::strerror(error) + ".";
}

struct Opening {
  int error = 0;  ///< errno of what the library could not do; 0: it says that it has opened the connection
  std::string whyDeaf;
};

// That the library has no thread to receive with, only its log tells.
std::string whyDeaf(const std::vector<std::string>& log) {
  constexpr std::string_view kLine = "can't create thread :[";
  for (const std::string& line : log) {
    if (line.starts_with(kLine)) return line.substr(kLine.size(), line.rfind(']') - kLine.size());
  }
  return "";
}

// Opening runs a command of the router, which may hang.
Opening tryToOpen(const Context& context, TembraAssociation& service) {
  const auto opening = std::make_shared<Opening>();
  const auto call = [&service, opening] {
    LogCapture log(RouterLog::kGetsAll);
    errno = 0;
    if (service.checkAssocConnection() != 0) opening->error = errno == 0 ? EIO : errno;
    opening->whyDeaf = whyDeaf(log.take());
  };
  try {
    runLibraryCall(call, [&context] { context.attention.pause(kPause); });
  } catch (const Failure& failure) {
    throw Failure(kNoConnection, std::string(kNoConnectionBecause) + failure.what());
  }
  return *opening;
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
  const Opening opening = tryToOpen(context, service);
  complainOfMissingCommand(errors);
  if (opening.error != 0) {
    errors.take(std::strerror(opening.error), ": libTembraAssoc:");
    throw Failure(kNoConnection, kNoConnectionBecause + whyNotOpen(opening.error));
  }
  if (!opening.whyDeaf.empty()) {
    service_.closeAssocConnection();
    throw Failure(kNoConnection,
                  kNoConnectionBecause + ("the library has no thread to receive with (" + opening.whyDeaf + ")."));
  }
  socket_ = service_.sock;
  // This takes the library's lock once more: what the library writes from here on comes after that read.
  service_.registerAssocEventCB(hearEvent);
}

Connection::~Connection() { service_.closeAssocConnection(); }

std::optional<std::string> whyNotSent(ErrorCapture& errors) { return errors.take("sendto error", ": "); }

void requireSent(ErrorCapture& errors) {
  const auto why = whyNotSent(errors);
  if (why) throw Failure(kNoConnection, kNoConnectionBecause + ("nothing can be sent (" + *why + ")."));
}

bool Connection::isOpen() const { return fcntl(socket_, F_GETFD) >= 0; }

}  // namespace tembra::cli
