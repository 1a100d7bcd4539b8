// The simulated router as it was when a recording was made: `tembra-sim replay`.
#ifndef TEMBRA_SIM_REPLAY_REPLAY_H
#define TEMBRA_SIM_REPLAY_REPLAY_H

#include <array>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/descriptor.h"
#include "sim/control/commands.h"
#include "sim/control/control_socket.h"
#include "sim/core/surroundings.h"
#include "sim/ha/ha_server.h"
#include "sim/home.h"
#include "sim/replay/commands_sent.h"
#include "sim/replay/comparison.h"
#include "sim/replay/ip_effects.h"
#include "sim/replay/known_devices.h"
#include "sim/replay/playback.h"
#include "sim/replay/replayed_server.h"
#include "sim/replay/traffic.h"

namespace tembra::sim {

struct ReplayOptions {
  std::filesystem::path file;
  std::string database = "/tmp/ddb";
  std::filesystem::path authorisation = "/tmp/Authcode";
  double speed = 1;
  bool goesOn = false;  ///< at a difference; else it stops there
  std::filesystem::path catalogue;
  std::vector<std::filesystem::path> ownDevices;
  std::vector<std::string> without;
  std::string control;
  std::filesystem::path recording;
  bool timeline = false;
};

class Replay {
 public:
  /// Opens everything; throws one sentence when something cannot be had.
  explicit Replay(const ReplayOptions& options);

  /// Runs until all is over, it is told to stop, or something differs.
  /// @return the exit status: 0 when everything was as it was then
  int run();

 private:
  void heard(const sockaddr_in& from, const sockaddr_in& to, std::span<const unsigned char> datagram);
  void start(std::size_t server);
  void change(std::size_t server, bool runs);
  void say(const RecordedDatagram& answer);
  void forget(const RecordedDatagram& answer);
  void sendAs(const RecordedDatagram& answer);
  void awaitEnd();
  void rest(std::chrono::milliseconds most);
  /// The library's waits pass no faster than the clock, whatever the speed of the servers is.
  EventLoop::TimerId afterRealTime(std::chrono::milliseconds delay, EventLoop::Task task);
  [[nodiscard]] bool mayEnd() const;
  Outcome status() const;

  ReplayOptions options_;
  Traffic traffic_;
  Journal journal_;
  EventLoop loop_;
  Happenings happenings_;
  Surroundings surroundings_{loop_, journal_, happenings_};
  Commands commands_;
  Home home_;
  Descriptor signals_;
  DeviceList list_;
  RadioNetwork zwaveNetwork_{kFirstNode, kLastNode};
  RadioNetwork zigbeeNetwork_{kFirstAddress, kLastAddress};
  HaServer haServer_;
  std::array<std::unique_ptr<ReplayedServer>, kServers.size() - 1> servers_;  ///< null: left out
  IpEffects effects_;
  std::array<Command, kServers.size()> lastCommands_{};
  ControlSocket control_;
  Playback playback_;
  Comparison comparison_;
  EventLoop::TimerId endTimer_ = 0;
  bool toldOfRest_ = false;
};

}  // namespace tembra::sim

#endif
