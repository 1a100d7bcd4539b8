// Add, remove, cancel and reset: commands to the two radio servers.
#include <tembra/association.h>
#include <unistd.h>

#include "support/log.h"
#include "support/shared_state.h"
#include "support/state_lock.h"
#include "support/text.h"

namespace tembra {
namespace {

constexpr unsigned kZigbeeResetGapSeconds = 2;
constexpr unsigned kResetSeconds = 7;

struct ZigbeeTexts {
  zigbee_cmd command;
  const char* text;
  const char* argument;
};

constexpr ZigbeeTexts kZigbeeTexts[] = {
    {zigbee_cmd_add, "option button1", "IAS"},
    {zigbee_cmd_remove, " ", "remove"},  // [sic] a lone blank
    {zigbee_cmd_reset, "n l", ""},
    {zigbee_cmd_cancel, "network pjoin 0", "cancel"},
};
constexpr const char* kZigbeeResetSecondText = "option button0";

struct ZwaveCodes {
  zwave_cmd command;
  ozw_OperationCode operation;
  ozw_ControllerCommand controllerCommand;
};

constexpr ZwaveCodes kZwaveCodes[] = {
    {zwave_cmd_add, ozw_Code_ControllerCommandOperation, ozw_ControllerCommand_AddDevice},
    {zwave_cmd_remove, ozw_Code_ControllerCommandOperation, ozw_ControllerCommand_RemoveDevice},
    {zwave_cmd_reset, ozw_Code_ResetCommandOperation, ozw_ControllerCommand_None},
    {zwave_cmd_cancel, ozw_Code_CancelCommandOperation, ozw_ControllerCommand_None},
};

// Sleeps the whole time, whatever signals arrive, and keeps no one waiting meanwhile.
void sleepFully(unsigned seconds) {
  const StateUnlocked unlocked;
  while (seconds > 0) seconds = sleep(seconds);
}

// The order is fixed: the state is set last. An answer that comes faster waits for the lock.
void startOperation(TembraAssociation& assoc, zigbee_cmd zigbee, zwave_cmd zwave, const char* commandType,
                    AssocState state) {
  assoc.cancelTarget = cancel_both;
  assoc.cmdToZigbee(zigbee);
  assoc.cmdToZwave(zwave);
  setCommandType(commandType);
  setIdle(false);
  setStateLeft(false);
  setState(assoc, state);
}

void cancelZigbee(TembraAssociation& assoc) {
  log(assoc, Level::kProgress, TEMBRA_LOG_PREFIX "Sending cancel command to zigbee_server");
  assoc.cmdToZigbee(zigbee_cmd_cancel);
}

void cancelZwave(TembraAssociation& assoc) {
  log(assoc, Level::kProgress, TEMBRA_LOG_PREFIX "Sending cancel command to zwave_server");
  assoc.cmdToZwave(zwave_cmd_cancel);
}

void resetBoth(TembraAssociation& assoc) {
  log(assoc, Level::kProgress, TEMBRA_LOG_PREFIX "*** Sending reset command to Zigbee_server and Zwave_server");
  assoc.cmdToZigbee(zigbee_cmd_reset);
  assoc.cmdToZwave(zwave_cmd_reset);
}

}  // namespace
}  // namespace tembra

using namespace tembra;

void TembraAssociation::cmdToZigbee(zigbee_cmd command) {
  const StateLock lock;
  for (const ZigbeeTexts& row : kZigbeeTexts) {
    if (row.command != command) continue;
    ZigbeeCommand datagram{};
    copyCallersText(datagram.command, row.text);
    copyCallersText(datagram.argument, row.argument);
    sendToServers(SERVER_ZIGBEE, &datagram);
    if (command != zigbee_cmd_reset) return;
    sleepFully(kZigbeeResetGapSeconds);
    copyCallersText(datagram.command, kZigbeeResetSecondText);
    sendToServers(SERVER_ZIGBEE, &datagram);
    log(*this, Level::kProgress, TEMBRA_LOG_PREFIX "Sending reset command to zigbee_server");
  }
}

void TembraAssociation::cmdToZwave(zwave_cmd command) {
  const StateLock lock;
  for (const ZwaveCodes& row : kZwaveCodes) {
    if (row.command != command) continue;
    ZwaveCommand datagram{};
    datagram.operation = row.operation;
    datagram.controllerCommand = row.controllerCommand;
    sendToServers(SERVER_ZWAVE, &datagram);
  }
}

void TembraAssociation::addDevZigbeeZwave() {
  const StateLock lock;
  log(*this, Level::kProgress, TEMBRA_LOG_PREFIX "inside addDevZigbeeZwave");
  startOperation(*this, zigbee_cmd_add, zwave_cmd_add, "AddDevice", ASSOC);
}

void TembraAssociation::removeDevZigbeeZwave() {
  const StateLock lock;
  startOperation(*this, zigbee_cmd_remove, zwave_cmd_remove, "RemoveDevice", DEASSOC);
}

void TembraAssociation::sendCancelTo(cancel_type type) {
  const StateLock lock;
  switch (type) {
    case cancel_zigbee:
      cancelZigbee(*this);
      return;
    case cancel_zwave:
      cancelZwave(*this);
      return;
    case cancel_both:
      cancelZigbee(*this);
      cancelZwave(*this);
      setIdle(true);
      setStateLeft(true);
      return;
  }
  log(*this, Level::kError, TEMBRA_LOG_PREFIX "Unknown cancel type");
}

namespace tembra {
namespace {

// The Z-Wave reset alone is logged after it was sent [sic].
void reset(TembraAssociation& assoc, reset_type type) {
  switch (type) {
    case reset_zigbee:
      log(assoc, Level::kProgress, TEMBRA_LOG_PREFIX "Sending reset command to Zigbee_server");
      assoc.cmdToZigbee(zigbee_cmd_reset);
      return;
    case reset_zwave:
      assoc.cmdToZwave(zwave_cmd_reset);
      log(assoc, Level::kProgress, TEMBRA_LOG_PREFIX "Sending reset command to Zwave_server");
      return;
    case reset_both:
      resetBoth(assoc);
      return;
    case reset_both_and_remove_all:
      resetBoth(assoc);
      log(assoc, Level::kDetail, TEMBRA_LOG_PREFIX "*** Removing all devices ***");
      assoc.removeAllDevices();
      return;
  }
  log(assoc, Level::kError, TEMBRA_LOG_PREFIX "Unknown reset type");
}

}  // namespace
}  // namespace tembra

void TembraAssociation::doResetFor(reset_type type) {
  const StateLock lock;
  reset(*this, type);
  sleepFully(kResetSeconds);
}
