// The Hue server: finds the Hue bridges of the home and adds them when their link button is pressed. It hands their
// bulbs over to the HA server.
#ifndef TEMBRA_SIM_HUE_HUE_SERVER_H
#define TEMBRA_SIM_HUE_HUE_SERVER_H

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "sim/answers/answers.h"
#include "sim/core/daemon.h"
#include "sim/core/outcome.h"
#include "sim/hue/bridges.h"
#include "sim/hue/lamps.h"
#include "tembra/records.h"

namespace tembra::sim {

class HueServer final : public Daemon {
 public:
  HueServer(Surroundings surroundings, Answers::Manner manner, HueLamps lamps, int bridges);
  HueServer(const HueServer&) = delete;
  HueServer& operator=(const HueServer&) = delete;
  ~HueServer() override { stopWaiting(); }

  Outcome pressLinkButton();
  /// From now on there are so many bridges ("25").
  Outcome setBridges(const std::string& count);
  /// Gives an answer at once, in place of the one that is due: "TYPE", or "TYPE COUNT" with a count of bridges of its
  /// own.
  Outcome say(const std::string& what);
  /// "idle", "answering" or "waiting for the link button".
  std::string_view state() const;

 private:
  struct Command;
  struct Request {
    std::string bridgeId;
    std::string argument;
  };

  void handle(Bytes datagram) override;
  void discover(const Request& request);
  void addBridge(const Request& request);
  void addBulb(const Request& request);
  void refresh(const Request& request);
  void removeBridge(const Request& request);

  bool buttonCounts() const;
  void link(const std::string& bridgeId);
  void giveUp();
  void stopWaiting();
  void attempt(const std::function<void()>& work);
  void play(int type, const std::string& text);

  static const Command kCommands[5];

  HueLamps lamps_;
  HueBridges bridges_;
  Answers answers_;
  std::optional<std::chrono::milliseconds> pressed_;  ///< when the link button was pressed last
  std::optional<std::string> awaited_;                ///< the bridge whose link button is waited for
  EventLoop::TimerId patience_ = 0;
};

}  // namespace tembra::sim

#endif
