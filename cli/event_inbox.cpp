#include "event_inbox.h"

#include <sys/eventfd.h>
#include <tembra/association.h>
#include <unistd.h>

#include <cstdint>
#include <deque>
#include <mutex>

namespace tembra::cli {
namespace {

struct Inbox {
  std::mutex mutex;
  std::deque<HeardEvent> events;
  int descriptor = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK | EFD_SEMAPHORE);
};

// Never destroyed: the library's thread may deliver an event while the process exits.
Inbox& inbox() {
  static auto* const kInbox = new Inbox;
  return *kInbox;
}

thread_local bool inLibraryCall = false;

}  // namespace

void hearEvent(AssocEvent* event) {
  // The library's own thread is the one that classifies.
  const auto proposed =
      inLibraryCall ? DEVTYPE_UNKNOWN : static_cast<DevType>(TembraAssociation::singleton->classifiedType);
  const std::lock_guard lock(inbox().mutex);
  inbox().events.push_back({*event, proposed, !inLibraryCall});
  eventfd_write(inbox().descriptor, 1);
}

std::optional<HeardEvent> fetchEvent() {
  const std::lock_guard lock(inbox().mutex);
  if (inbox().events.empty()) return std::nullopt;
  eventfd_t one = 0;
  eventfd_read(inbox().descriptor, &one);
  const HeardEvent event = inbox().events.front();
  inbox().events.pop_front();
  return event;
}

int eventDescriptor() { return inbox().descriptor; }

LibraryCall::LibraryCall() { inLibraryCall = true; }
LibraryCall::~LibraryCall() { inLibraryCall = false; }

}  // namespace tembra::cli
