#include "operations.h"

#include <cerrno>
#include <new>

namespace tembra::frontend {
namespace {

[[noreturn]] void run(Session& session, const Command& command) {
  switch (command.operation) {
    case TEMBRA_OPERATION_ADD:
      addDevice(session, command.what == 0 ? Known::kRefused : Known::kAddedAgain);
    case TEMBRA_OPERATION_REMOVE:
      removeDevice(session, command.what == 0 ? Leaving::kListed : Leaving::kStranger);
    case TEMBRA_OPERATION_RESET:
      resetRadios(session, command.what);
    case TEMBRA_OPERATION_HUE_DISCOVER:
      discoverBridges(session);
    case TEMBRA_OPERATION_HUE_ADD_BRIDGE:
      addBridge(session, command);
    case TEMBRA_OPERATION_HUE_ADD_BULB:
      addBulb(session, command);
    case TEMBRA_OPERATION_HUE_REFRESH:
      refreshBridge(session, command);
    case TEMBRA_OPERATION_HUE_REMOVE:
      removeBridge(session, command);
    case TEMBRA_OPERATION_HUE_LIST:
      listBridges(session);
    case TEMBRA_OPERATION_NEST_STATUS:
      tellAccount(session);
    case TEMBRA_OPERATION_NEST_LINK:
      linkAccount(session, command);
    case TEMBRA_OPERATION_NEST_UNLINK:
      unlinkAccount(session);
    default:
      listDevices(session);
  }
}

}  // namespace

End endOf(Session& session, const Command& command) {
  try {
    run(session, command);
  } catch (const End& end) {
    return end;
  } catch (const Cancelled&) {
    return session.cancelled();
  } catch (const std::bad_alloc&) {
    return failed(TEMBRA_REASON_NO_MEMORY, 0, ENOMEM);
  }
}

}  // namespace tembra::frontend
