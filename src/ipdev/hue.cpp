// Commands for Hue bridges and bulbs.
#include <tembra/association.h>
#include <tembra/hue.h>

#include "ipdev/ip_command.h"
#include "support/state_lock.h"
#include "support/text.h"

namespace tembra {
namespace {

HueCommand forBridge(HueCommandCode code, char* mac) {
  HueCommand command{};
  char bridgeId[sizeof command.bridgeId] = {};
  RevertHueMac(mac, bridgeId);
  copyText(command.bridgeId, bridgeId);
  command.command = code;
  return command;
}

}  // namespace
}  // namespace tembra

using namespace tembra;

unsigned char* TembraAssociation::Hue_initiateAdd() {
  const StateLock lock;
  HueCommand command{};
  command.command = HUE_DISCOVER;
  return startIpOperation(*this, SERVER_HUE, command, nullptr);
}

unsigned char* TembraAssociation::Hue_addBridge(char* mac) {
  const StateLock lock;
  HueCommand command = forBridge(HUE_ADD_BRIDGE, mac);
  return startIpOperation(*this, SERVER_HUE, command, "AddIPDevice");
}

unsigned char* TembraAssociation::Hue_addDev(char* mac, char* text) {
  const StateLock lock;
  HueCommand command = forBridge(HUE_ADD_BULB, mac);
  copyCallersText(command.argument, text);
  return startIpOperation(*this, SERVER_HUE, command, "AddHueDevice");
}

unsigned char* TembraAssociation::Hue_refreshBridge(char* mac, char* text) {
  const StateLock lock;
  HueCommand command = forBridge(HUE_REFRESH, mac);
  copyCallersText(command.argument, text);
  return startIpOperation(*this, SERVER_HUE, command, "RefreshIPDevice");
}

unsigned char* TembraAssociation::Hue_remove(char* mac) {
  const StateLock lock;
  HueCommand command = forBridge(HUE_REMOVE, mac);
  return startIpOperation(*this, SERVER_HUE, command, "RemoveIPDevice");
}
