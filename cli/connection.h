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

/// Calls that send, while it lives: no result of theirs tells whether they could.
class Sending {
 public:
  Sending();

  /// Why the library could not send a datagram, if so.
  [[nodiscard]] std::optional<std::string> failure();

  /// Throws Failure (kNoConnection) with that reason.
  void require();

 private:
  ErrorCapture errors_;  // the library's own line would stand beside our sentence
  unsigned failuresBefore_;
};

}  // namespace tembra::cli

#endif
