#include "worker.h"

#include <tembra/globals.h>

#include <cerrno>
#include <cstring>
#include <new>

#include "operations.h"

namespace tembra::frontend {
namespace {

// The library's one callback has no room for an object of ours.
std::mutex listenerMutex;
Inbox* listener = nullptr;

std::unique_ptr<LibraryEvent> snapshot(const AssocEvent& event) {
  const TembraAssociation& service = *TembraAssociation::singleton;
  auto heard = std::make_unique<LibraryEvent>();
  heard->event = event;
  heard->state = service.assocState;
  heard->classifiedType = service.classifiedType;
  heard->deviceId = DevId;
  heard->removedId = service.removedId;
  heard->node = service.zwNodeRx.nodeId;
  std::memcpy(heard->deviceName, service.devName, sizeof heard->deviceName);
  std::memcpy(heard->removedName, service.removedName, sizeof heard->removedName);
  heard->zigbeeDevice = service.zbDevice;
  return heard;
}

// No exception may pass through the library.
void hear(AssocEvent* event) {
  if (Runner::isThisThread()) return;
  const std::lock_guard lock(listenerMutex);
  if (listener == nullptr) return;
  try {
    listener->hear(snapshot(*event));
  } catch (const std::bad_alloc&) {
    listener->loseEvents();
  }
}

void listenWith(Inbox* inbox) {
  const std::lock_guard lock(listenerMutex);
  listener = inbox;
}

TembraAssociation& serviceAs(int role) {
  constexpr TembraAssociation* (*kInitialisers[])() = {
      TembraAssociation::LCDAssocInit,        TembraAssociation::webServerAssocInit,
      TembraAssociation::LCDAssocInit,        TembraAssociation::cloudappsAssocInit,
      TembraAssociation::meshServerAssocInit, TembraAssociation::FreeUsr1AssocInit,
      TembraAssociation::FreeUsr2AssocInit};
  return *kInitialisers[role]();
}

[[noreturn]] void run(Session& session, const Command& command) {
  switch (command.operation) {
    case TEMBRA_OPERATION_ADD:
      addDevice(session);
    case TEMBRA_OPERATION_REMOVE:
      removeDevice(session);
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
    default:
      unlinkAccount(session);
  }
}

End endOf(Session& session, const Command& command) {
  try {
    run(session, command);
  } catch (const End& end) {
    return end;
  } catch (const Cancelled&) {
    return {TEMBRA_CANCELLED, TEMBRA_REASON_CANCELLED, 0, 0, 0, {}};
  } catch (const std::bad_alloc&) {
    return failed(TEMBRA_REASON_NO_MEMORY, 0, ENOMEM);
  }
}

}  // namespace

Listening::Listening(TembraAssociation& service, Inbox& inbox) : service_(service) {
  listenWith(&inbox);
  service_.registerAssocEventCB(hear);
}

Listening::~Listening() {
  service_.registerAssocEventCB(nullptr);
  listenWith(nullptr);
}

Worker::Worker(const tembra_options& options)
    : service_(serviceAs(options.role)),
      keepOpen_(options.keep_open != 0),
      runner_(inbox_),
      watching_(options, outbox_, inbox_),
      listening_(service_, inbox_),
      thread_(startThread([this] { work(); })) {}

Worker::~Worker() {
  inbox_.quit();
  thread_.join();
}

void Worker::work() {
  while (const auto command = inbox_.awaitCommand()) perform(*command);
  watching_.end();
  if (socket_ != 0) service_.closeAssocConnection();
}

void Worker::perform(const Command& command) {
  outbox_.begin(command.operation);
  Session session(service_, outbox_, inbox_, runner_, watching_, keepOpen_, socket_);
  session.finish(endOf(session, command));
  outbox_.clear();
}

}  // namespace tembra::frontend
