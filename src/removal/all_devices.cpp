// Telling the HA server to drop every device, of all radios.
#include <tembra/association.h>

#include <cstring>

#include "support/log.h"
#include "support/state_lock.h"

namespace tembra {
namespace {

constexpr char kRemoveAllText[] = "removeAllDevices";

}  // namespace
}  // namespace tembra

using namespace tembra;

void TembraAssociation::removeAllDevices() {
  const StateLock lock;
  HaNotice notice{};
  notice.recordKind = RECORD_ZIGBEE;
  std::memcpy(notice.record, kRemoveAllText, sizeof kRemoveAllText);
  log(*this, Level::kDetail, TEMBRA_LOG_PREFIX "Sending removeAllDevices to haserver");
  sendToServers(SERVER_HA, &notice);
}
