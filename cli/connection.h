// The library's connection, as one role opens it.
#ifndef TEMBRA_CLI_CONNECTION_H
#define TEMBRA_CLI_CONNECTION_H

#include <tembra/assoc.h>

#include <optional>
#include <string>
#include <vector>

#include "context.h"
#include "error_capture.h"

namespace tembra::cli {

/// The values of --role.
[[nodiscard]] std::vector<std::string> roleNames();

/// The service object in this role, not yet open.
[[nodiscard]] TembraAssociation& serviceAs(const std::string& role);

/// What to say when the library has closed the connection: it does so after an answer from a server that is no radio.
inline constexpr char kClosedForWebServer[] = "The library has closed the connection, as it does for the web server.";

/// Open as long as it lives. Throws Failure (kNoConnection) when the library cannot open it, and Interrupted.
class Connection {
 public:
  Connection(const Context& context, TembraAssociation& service);
  ~Connection();
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  /// False when the library has closed it, which no event tells.
  [[nodiscard]] bool isOpen() const;

 private:
  TembraAssociation& service_;
  int socket_;
};

/// Why the library could not send a datagram while the errors were kept, if so: no result of a call tells it.
[[nodiscard]] std::optional<std::string> whyNotSent(ErrorCapture& errors);

/// Throws Failure (kNoConnection) with that reason.
void requireSent(ErrorCapture& errors);

}  // namespace tembra::cli

#endif
