// What the library's requests say.
#ifndef TEMBRA_SIM_REPLAY_COMMANDS_SENT_H
#define TEMBRA_SIM_REPLAY_COMMANDS_SENT_H

#include <span>
#include <string>
#include <vector>

#include "sim/replay/traffic.h"

namespace tembra::sim {

enum class Command {
  kUnknown,
  kAdd,
  kRemove,
  kCancel,
  kReset,
  kResetEnd,
  kHueDiscover,
  kHueAdd,
  kHueBulb,
  kHueRefresh,
  kHueRemove,
  kNestLink,
  kNestUnlink,
  kNoticeAdded,
  kNoticeRemoved,
  kNoticeRemovedAll
};

Command commandIn(Server server, std::span<const unsigned char> request);

/// "add", "added: Lamp".
std::string describe(Server server, std::span<const unsigned char> request);

/// The request with zeros where its server must not read: a sender leaves there what was there.
std::vector<unsigned char> meaningOf(Server server, std::span<const unsigned char> request);

}  // namespace tembra::sim

#endif
