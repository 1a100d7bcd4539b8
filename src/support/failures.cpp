#include "support/failures.h"

#include "support/errno_text.h"
#include "support/sized_struct.h"
#include "support/state_lock.h"
#include "support/text.h"

namespace tembra {
namespace {

struct Failure {
  unsigned count;
  int server;
  int cause;
  int error;
};
Failure lastSend{};
Failure lastOpening{};

}  // namespace

void recordSendFailure(ServerType server, int error) { lastSend = {lastSend.count + 1, server, 0, error}; }

void recordOpeningFailure(tembra_opening_cause cause, int error) {
  lastOpening = {lastOpening.count + 1, 0, cause, error};
}

}  // namespace tembra

int tembra_last_failure(int kind, tembra_failure* failure) {
  using namespace tembra;
  if (kind != TEMBRA_FAILURE_SEND && kind != TEMBRA_FAILURE_OPENING) return EINVAL;
  const StateLock lock;
  const Failure& last = kind == TEMBRA_FAILURE_SEND ? lastSend : lastOpening;
  tembra_failure filled{0, last.count, last.server, last.cause, last.error, {}};
  if (last.error != 0) copyCallersText(filled.text, ErrnoText(last.error).text());
  return fillIn(failure, filled);
}
