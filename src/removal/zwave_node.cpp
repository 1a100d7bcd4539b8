// Z-Wave nodes in the device database: is one known, and telling the HA server to drop one.
#include <tembra/association.h>

#include <cstring>

#include "database/device_database.h"
#include "support/log.h"
#include "support/state_lock.h"
#include "support/text.h"

namespace tembra {
namespace {

// [sic] The line says "Removing" also when a node is only looked up.
void rememberRemoved(TembraAssociation& assoc, const DeviceRecord& device) {
  copyText(assoc.removedName, device.name);
  assoc.removedId = device.id;
  LogLine(assoc, Level::kProgress, TEMBRA_LOG_PREFIX "Removing Zwave device ") << static_cast<int>(device.zwaveNode);
}

// The notice carries the working copy as it stands: what is left of an earlier add travels along.
void sendRemovalNotice(TembraAssociation& assoc, unsigned char node) {
  assoc.zwNodeWork.nodeId = node;
  assoc.zwNodeWork.deviceKind = DEVICE_ZWAVE;
  assoc.zwNodeWork.requestMark = MARK_REMOVED;
  HaNotice notice{};
  notice.recordKind = RECORD_ZWAVE;
  std::memcpy(notice.record, &assoc.zwNodeWork, sizeof assoc.zwNodeWork);
  if (assoc.sendToServers(SERVER_HA, &notice) == -1) {
    log(assoc, Level::kError, TEMBRA_LOG_PREFIX "sending failed to haserver");
  } else {
    log(assoc, Level::kProgress, TEMBRA_LOG_PREFIX "device removed sending success to haserver");
  }
}

// Calls `found` under the state lock for every device of the received node.
template <typename Found>
void forEachDeviceOfNode(DatabaseSession& database, unsigned char node, Found found) {
  database.forEachDevice([&](const StoredDevice& device) {
    if (!device.isZwaveNode(node)) return;
    const StateLock lock;
    found(device.record());
  });
}

}  // namespace
}  // namespace tembra

using namespace tembra;

int TembraAssociation::ZW_checkNodeExists() {
  const StateLock lock;
  const unsigned char node = zwNodeRx.nodeId;
  int exists = 0;
  DatabaseSession database;
  if (!database.isOpen()) return 0;
  forEachDeviceOfNode(database, node, [&](const DeviceRecord& device) {
    rememberRemoved(*this, device);
    exists = 1;
  });
  return exists;
}

int TembraAssociation::ZW_removeNode() {
  const StateLock lock;
  const unsigned char node = zwNodeRx.nodeId;
  DatabaseSession database;
  if (!database.isOpen()) return database.deletionResult();
  forEachDeviceOfNode(database, node, [&](const DeviceRecord& device) {
    rememberRemoved(*this, device);
    sendRemovalNotice(*this, node);
  });
  return 0;
}
