#include "support/stage.h"

#include <fcntl.h>
#include <tembra/globals.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>

#include "support/database_file.h"
#include "support/event_check.h"
#include "support/invariant.h"
#include "support/private_folder.h"

namespace fuzz {
namespace {

thread_local Stage* currentStage = nullptr;

ssize_t swallow(void* /*cookie*/, const char* /*text*/, std::size_t size) { return static_cast<ssize_t>(size); }

// The library's errors and debug prints go nowhere, at no cost.
std::FILE* sink() {
  static std::FILE* const stream = fopencookie(nullptr, "w", {nullptr, &swallow, nullptr, nullptr});
  return stream;
}

template <typename T>
void clear(T& object) {
  std::memset(&object, 0, sizeof object);
}

void resetGlobals() {
  idle = 1;
  clear(cmdtype);
  clear(tempStr);
  DevId = 0;
  std::memcpy(DBName, kDatabaseName, sizeof kDatabaseName);
  BasicFlag = MultilevelFlag = SensorBinaryFlag = ZwAcExtFlag = 0;
  local_meshID = assoc_meshID = -1;
  clear(username1);
}

void resetObject(TembraAssociation& assoc) {
  assoc.running = assoc.closeMark = 0;
  clear(assoc.devName);
  clear(assoc.devLocation);
  assoc.sock = 0;
  assoc.clientRole = assoc.activeRadio = 0;
  assoc.classifiedType = assoc.devType = 0;
  clear(assoc.removedName);
  assoc.removedId = 0;
  clear(assoc.zbDevice);
  clear(assoc.zwNodeWork);
  clear(assoc.zwNodeRx);
  assoc.eventCallback = &hear;
  assoc.assocState = ASSOC_IDLE;
  assoc.lastEventCode = assoc.cancelTarget = 0;
}

void reopenStandardInput() {
  if (fcntl(STDIN_FILENO, F_GETFD) == -1) static_cast<void>(open("/dev/null", O_RDWR));
}

}  // namespace

Stage* Stage::current() { return currentStage; }

Stage::Stage(Router& router, Database database) : router_(router), assoc_(nullptr), stdout_(stdout), stderr_(stderr) {
  require(currentStage == nullptr, "one stage at a time");
  stdout = stderr = sink();
  PrivateFolder::enter();
  if (database == Database::kNone) removeDatabaseFile();
  currentStage = this;
  assoc_ = TembraAssociation::getInstance();
  resetGlobals();
  resetObject(*assoc_);
}

Stage::~Stage() {
  currentStage = nullptr;
  reopenStandardInput();
  PrivateFolder::leave();
  stdout = stdout_;
  stderr = stderr_;
}

// A descriptor like any other, so that what the library does with it works.
int Stage::openSocket() {
  const bool lowest = router_.strikes(Fault::kLowestDescriptor);
  if (lowest) close(STDIN_FILENO);
  const int descriptor = open("/dev/null", O_RDWR);
  if (descriptor >= 0) sockets_.push_back(descriptor);
  return descriptor;
}

bool Stage::bindSocket(int descriptor) {
  if (bound_ != -1) return false;
  if (std::ranges::find(sockets_, descriptor) == sockets_.end()) sockets_.push_back(descriptor);  // a duplicate
  bound_ = descriptor;
  ++bindings_;
  return true;
}

void Stage::closing(int descriptor) {
  std::erase(sockets_, descriptor);
  if (descriptor == bound_) bound_ = -1;
}

void hear(AssocEvent* event) {
  checkEvent(*event);
  Stage::current()->router().heard(*event);
}

}  // namespace fuzz
