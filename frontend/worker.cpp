#include "worker.h"

#include <new>

#include "operations.h"

namespace tembra::frontend {
namespace {

// The library's one callback has no room for an object of ours.
std::mutex listenerMutex;
Inbox* listener = nullptr;

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
