#include "worker.h"

#include <tembra/globals.h>

#include <cstring>

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
  return heard;
}

void hear(AssocEvent* event) {
  if (Runner::isThisThread()) return;
  const std::lock_guard lock(listenerMutex);
  if (listener != nullptr) listener->hear(snapshot(*event));
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
    case TEMBRA_OPERATION_HUE_ADD_LAMP:
      addLamp(session, command);
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
  }
}

}  // namespace

Worker::Worker(const tembra_options& options)
    : service_(serviceAs(options.role)),
      keepOpen_(options.keep_open != 0),
      runner_(inbox_),
      watching_(options, outbox_, inbox_) {
  listenWith(&inbox_);
  service_.registerAssocEventCB(hear);
  thread_ = startThread([this] { work(); });
}

Worker::~Worker() {
  inbox_.quit();
  thread_.join();
  service_.registerAssocEventCB(nullptr);
  listenWith(nullptr);
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
  outbox_.end();
}

}  // namespace tembra::frontend
