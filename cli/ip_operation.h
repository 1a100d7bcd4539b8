// A command to the Hue or the Nest server, from giving it to its answer.
#ifndef TEMBRA_CLI_IP_OPERATION_H
#define TEMBRA_CLI_IP_OPERATION_H

#include <tembra/association.h>

#include <functional>
#include <span>
#include <string>

#include "context.h"
#include "event_inbox.h"

namespace tembra::cli {

struct IpCommand {
  ServerType server;
  std::string call;  ///< as text
  std::function<void(TembraAssociation&)> give;
  std::string waitsFor;  ///< what the user is told to be waiting for
  std::string advice;    ///< what the user has to do meanwhile; empty: nothing
};

/// An answer that says that the server did not do it, and why.
struct Refusal {
  int code;
  const char* why;
};

/// Gives the command and waits for the server's answer; tells when the library closes the connection behind it. Throws
/// Interrupted, and Failure: without the server, without an answer, and for every answer whose code is not in `done`.
[[nodiscard]] HeardEvent askServer(const Context& context, const IpCommand& command, std::span<const int> done,
                                   std::span<const Refusal> refusals);

}  // namespace tembra::cli

#endif
