// The Nest server: links and unlinks a Nest account.
#ifndef TEMBRA_SIM_NEST_NEST_SERVER_H
#define TEMBRA_SIM_NEST_NEST_SERVER_H

#include <string>
#include <string_view>

#include "sim/answers/answers.h"
#include "sim/core/daemon.h"
#include "sim/core/outcome.h"
#include "sim/nest/authorisation.h"
#include "tembra/records.h"

namespace tembra::sim {

class NestServer final : public Daemon {
 public:
  NestServer(Surroundings surroundings, Answers::Manner manner, Authorisation authorisation);

  /// Gives an answer at once, in place of the one that is due: "COMMAND", "COMMAND STATUS" or "COMMAND STATUS VALUE".
  Outcome say(const std::string& what);
  /// "idle" or "answering".
  std::string_view state() const { return answers_.playing() ? "answering" : "idle"; }
  bool linked() const { return authorisation_.exists(); }

 private:
  struct Command;

  void handle(Bytes datagram) override;
  void link(const std::string& code);
  void unlink(const std::string& code);
  void play(const NestAnswer& answer);

  static const Command kCommands[2];

  Authorisation authorisation_;
  Answers answers_;
};

}  // namespace tembra::sim

#endif
