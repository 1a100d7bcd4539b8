// The simulated router: the daemons, the devices around them, and the ways to push their buttons.
#ifndef TEMBRA_SIM_ROUTER_H
#define TEMBRA_SIM_ROUTER_H

#include <array>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "platform/descriptor.h"
#include "sim/answers/fault.h"
#include "sim/control/commands.h"
#include "sim/control/control_socket.h"
#include "sim/core/process.h"
#include "sim/core/surroundings.h"
#include "sim/ha/ha_server.h"
#include "sim/home.h"
#include "sim/hue/hue_server.h"
#include "sim/nest/nest_server.h"
#include "sim/radio/network.h"
#include "sim/scenario/scenario.h"
#include "sim/zigbee/zigbee_server.h"
#include "sim/zwave/zwave_server.h"

namespace tembra::sim {

/// The servers that can be killed, left out and started, in the words of people.
inline constexpr std::array<std::string_view, 4> kKillableServers{"zwave", "zigbee", "hue", "nest"};

struct RouterOptions {
  std::string database = "/tmp/ddb";
  std::filesystem::path authorisation = "/tmp/Authcode";
  int bridges = 1;
  double speed = 1;
  int latencyMs = 200;
  std::vector<Fault> faults;
  std::filesystem::path catalogue;                ///< folder of the two files
  std::vector<std::filesystem::path> ownDevices;  ///< files that add to it
  std::filesystem::path scenario;                 ///< empty: none
  std::vector<std::string> without;               ///< words of kKillableServers whose servers are left out
  std::string control;
  std::filesystem::path recording;  ///< empty: none
  bool timeline = false;
};

class Router {
 public:
  /// Opens everything; throws one sentence when something cannot be had.
  explicit Router(const RouterOptions& options);

  /// Runs until it is told to stop, by a signal, a request or the scenario.
  /// @return the exit status: 0 when nothing was wrong, 1 when the caller made mistakes or the simulator had trouble
  int run();

 private:
  bool isStored(unsigned char node);

  void addRequests();
  Outcome press(const std::string& name);
  Outcome fail(const std::string& radio);
  Outcome answer(const std::string& serverAndAnswer);
  Outcome send(const std::string& whoAndDatagram);
  Outcome addFault(const std::string& specification);
  Outcome setBridges(const std::string& count);
  Outcome kill(const std::string& name);
  Outcome start(const std::string& name);
  Outcome stop();
  Outcome status() const;
  /// Null: no server that can be killed is called so.
  Killable* serverCalled(const std::string& name);

  int bridges_;
  Journal journal_;
  EventLoop loop_;
  Happenings happenings_;
  Surroundings surroundings_{loop_, journal_, happenings_};
  FaultList faults_;
  Answers::Manner manner_;
  Commands commands_;
  Home home_;
  std::vector<ScenarioStep> steps_;
  Descriptor signals_;
  DeviceList list_;
  RadioNetwork zwaveNetwork_{kFirstNode, kLastNode};
  RadioNetwork zigbeeNetwork_{kFirstAddress, kLastAddress};
  Process<ZwaveServer> zwave_;
  Process<ZigbeeServer> zigbee_;
  HaServer haServer_;
  Process<HueServer> hue_;
  Process<NestServer> nest_;
  ControlSocket control_;
  Scenario scenario_;
};

}  // namespace tembra::sim

#endif
