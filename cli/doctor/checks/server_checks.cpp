// Which daemons listen, and whether they read.
#include <tembra/endpoints.h>
#include <tembra/vocabulary.h>

#include <tembra/frontend.hpp>

#include "cli/doctor/checks/checks.h"
#include "cli/doctor/facts/router.h"

namespace tembra::cli::doctor {
namespace {

constexpr int kSamples = 3;
constexpr std::chrono::milliseconds kBetweenSamples{200};

struct Daemon {
  ServerType server;
  const char* name;
  char* address;
  const char* loss;  ///< without it
};

std::string listenersText(const std::vector<Owned>& listeners) {
  std::string text;
  for (const Owned& one : listeners) text += (text.empty() ? "" : "; ") + whoText(one);
  return text;
}

unsigned long unreadAt(const Daemon& daemon) {
  unsigned long unread = 0;
  for (const UdpSocket& socket : readUdpTable().at(endpoint(daemon.address))) unread += socket.unread;
  return unread;
}

// What waits and never grows less: a daemon that works reads some of it, however much it is sent.
unsigned long staysUnread(Router& router, const Daemon& daemon) {
  unsigned long before = unreadAt(daemon);
  for (int i = 1; i < kSamples && before > 0; ++i) {
    router.context().attention.pause(kBetweenSamples);
    const unsigned long now = unreadAt(daemon);
    before = now < before ? 0 : now;
  }
  return before;
}

Verdict checkDaemon(Router& router, const Daemon& daemon) {
  const std::string name = std::string("The ") + daemon.name + " server";
  if (tembra_server_listens(daemon.server) == 0) {
    return finding(name + " does not run.", std::string("nobody listens at ") + daemon.address + ".",
                   std::string("Start it. Without it ") + daemon.loss + ".");
  }
  if (!router.udp().isTold)
    return note("The kernel does not tell whether the " + std::string(daemon.name) + " server runs.");
  const std::vector<Owned> listeners = router.ownersOf(daemon.address);
  const std::string who = listenersText(listeners);
  if (listeners.size() > 1) {
    return finding("Two programs listen in the " + std::string(daemon.name) + " server's place.",
                   std::string(daemon.address) + ": " + who + ".",
                   "End the one that is not the server. Neither may set SO_REUSEADDR or SO_REUSEPORT.");
  }
  if (const unsigned long unread = staysUnread(router, daemon); unread > 0) {
    return finding(name + " does not read what it is sent.",
                   std::to_string(unread) + " bytes wait at " + daemon.address + " for " + who + ".",
                   "Start it again: it hangs or was stopped.");
  }
  return well(name + " runs: " + who + ".");
}

}  // namespace

Verdict checkHaServer(Router& router) {
  return checkDaemon(router, {SERVER_HA, "HA", ha_assoc_adr, "no device is stored or dropped"});
}
Verdict checkZwaveServer(Router& router) {
  return checkDaemon(router, {SERVER_ZWAVE, "Z-Wave", ozw_adr, "no Z-Wave device can be added or removed"});
}
Verdict checkZigbeeServer(Router& router) {
  return checkDaemon(router, {SERVER_ZIGBEE, "ZigBee", zigbee_adr, "no ZigBee device can be added or removed"});
}
Verdict checkHueServer(Router& router) {
  return checkDaemon(router, {SERVER_HUE, "Hue", hue_server_adr, "no Hue bridge can be found or added"});
}
Verdict checkNestServer(Router& router) {
  return checkDaemon(router, {SERVER_NEST, "Nest", nest_server_adr, "no Nest account can be linked"});
}

}  // namespace tembra::cli::doctor
