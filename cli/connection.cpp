#include "connection.h"

#include <fcntl.h>

#include <cerrno>
#include <cstring>
#include <memory>

#include "event_inbox.h"
#include "failure.h"
#include "library_call.h"

namespace tembra::cli {
namespace {

constexpr std::chrono::milliseconds kPause{100};

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

// Opening runs a command of the router, which may hang.
Connection::Connection(const Context& context, TembraAssociation& service) : service_(service), socket_(-1) {
  service_.registerAssocEventCB(hearEvent);
  const auto error = std::make_shared<int>(0);
  const auto open = [&service, error] {
    errno = 0;
    if (service.checkAssocConnection() != 0) *error = errno == 0 ? EIO : errno;
  };
  runLibraryCall(open, [&context] { context.attention.pause(kPause); });
  if (*error != 0) throw Failure(kNoConnection, "no connection: " + whyNotOpen(*error));
  socket_ = service_.sock;
}

Connection::~Connection() { service_.closeAssocConnection(); }

bool Connection::isOpen() const { return fcntl(socket_, F_GETFD) >= 0; }

}  // namespace tembra::cli
