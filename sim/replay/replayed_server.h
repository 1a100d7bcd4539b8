// A server that says nothing of its own.
#ifndef TEMBRA_SIM_REPLAY_REPLAYED_SERVER_H
#define TEMBRA_SIM_REPLAY_REPLAYED_SERVER_H

#include "sim/core/daemon.h"

namespace tembra::sim {

class ReplayedServer final : public Daemon {
 public:
  ReplayedServer(const Endpoint& self, std::size_t datagramLength, Surroundings surroundings)
      : Daemon(self, datagramLength, surroundings) {}

 private:
  // The journal's listener hears datagrams of every length.
  void handle(Bytes) override {}
};

}  // namespace tembra::sim

#endif
