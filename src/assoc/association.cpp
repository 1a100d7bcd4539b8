// The one object, its roles and its callback.
#include <tembra/association.h>

#include "support/state_lock.h"

using namespace tembra;

TembraAssociation* TembraAssociation::singleton = nullptr;

TembraAssociation::TembraAssociation()
    : running(0),
      closeMark(0),
      devName{},
      devLocation{},
      sock(0),
      clientRole(0),
      activeRadio(0),
      classifiedType(0),
      devType(0),
      removedName{},
      removedId(0),
      zbDevice{},
      zwNodeWork{},
      zwNodeRx{},
      localAddr{},
      logger(Logger::getInstance()),
      eventCallback(nullptr),
      assocState(ASSOC_IDLE),
      lastEventCode(0),
      cancelTarget(0) {
  ConnectToServers();
}

TembraAssociation::TembraAssociation(const TembraAssociation& /*other*/) {}  // NOLINT: copies no field, by contract

TembraAssociation::~TembraAssociation() = default;

TembraAssociation* TembraAssociation::getInstance() {
  const StateLock lock;
  if (singleton == nullptr) singleton = new TembraAssociation;
  return singleton;
}

namespace tembra {
namespace {

TembraAssociation* inRole(ClientRole role) {
  const StateLock lock;
  TembraAssociation* assoc = TembraAssociation::getInstance();
  assoc->clientRole = role;
  return assoc;
}

}  // namespace
}  // namespace tembra

TembraAssociation* TembraAssociation::webServerAssocInit() { return inRole(ROLE_WEB_SERVER); }
TembraAssociation* TembraAssociation::LCDAssocInit() { return inRole(ROLE_LCD); }
TembraAssociation* TembraAssociation::cloudappsAssocInit() { return inRole(ROLE_CLOUD_APPS); }
TembraAssociation* TembraAssociation::meshServerAssocInit() { return inRole(ROLE_MESH_SERVER); }
TembraAssociation* TembraAssociation::FreeUsr1AssocInit() { return inRole(ROLE_FREE_USER_1); }
TembraAssociation* TembraAssociation::FreeUsr2AssocInit() { return inRole(ROLE_FREE_USER_2); }

void TembraAssociation::registerAssocEventCB(void (*callback)(AssocEvent*)) {
  const StateLock lock;
  eventCallback = callback;
}
