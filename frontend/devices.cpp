// Lists the device database.
#include <cerrno>

#include "operations.h"

namespace tembra::frontend {

void listDevices(Session& session) {
  session.enter(TEMBRA_PHASE_DATABASE, Milliseconds(-1));
  const DeviceList list = session.listDevices();
  if (list.error == EBADMSG) throw failed(TEMBRA_REASON_DATABASE_DAMAGED);
  if (list.error != 0) throw failed(TEMBRA_REASON_DATABASE_UNREADABLE, 0, list.error);
  session.tell(TEMBRA_EVENT_DEVICES, list.devices);
  throw done();
}

}  // namespace tembra::frontend
