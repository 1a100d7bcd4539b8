// Commands for Hue bridges and lamps.
#include <tembra/association.h>
#include <tembra/hue.h>

#include "ipdev/ip_command.h"
#include "support/state_lock.h"
#include "support/text.h"

using tembra::StateLock;

namespace {

enum HueCode : unsigned { kAddBridge = 100, kAddLamp = 105, kRefresh = 106, kRemove = 109, kDiscover = 114 };

HueCommand forBridge(HueCode code, char* mac) {
  HueCommand command{};
  char bridgeId[sizeof command.bridgeId] = {};
  RevertHueMac(mac, bridgeId);
  tembra::copyText(command.bridgeId, bridgeId);
  command.command = code;
  return command;
}

}  // namespace

unsigned char* TembraAssociation::Hue_initiateAdd() {
  const StateLock lock;
  HueCommand command{};
  command.command = kDiscover;
  return tembra::startIpOperation(*this, SERVER_HUE, command, nullptr);
}

unsigned char* TembraAssociation::Hue_addBridge(char* mac) {
  const StateLock lock;
  HueCommand command = forBridge(kAddBridge, mac);
  return tembra::startIpOperation(*this, SERVER_HUE, command, "AddIPDevice");
}

unsigned char* TembraAssociation::Hue_addDev(char* mac, char* text) {
  const StateLock lock;
  HueCommand command = forBridge(kAddLamp, mac);
  tembra::copyCallersText(command.argument, text);
  return tembra::startIpOperation(*this, SERVER_HUE, command, "AddHueDevice");
}

unsigned char* TembraAssociation::Hue_refreshBridge(char* mac, char* text) {
  const StateLock lock;
  HueCommand command = forBridge(kRefresh, mac);
  tembra::copyCallersText(command.argument, text);
  return tembra::startIpOperation(*this, SERVER_HUE, command, "RefreshIPDevice");
}

unsigned char* TembraAssociation::Hue_remove(char* mac) {
  const StateLock lock;
  HueCommand command = forBridge(kRemove, mac);
  return tembra::startIpOperation(*this, SERVER_HUE, command, "RemoveIPDevice");
}
