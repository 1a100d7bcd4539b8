#include "support/failures.h"

#include <cerrno>
#include <cstring>

#include "support/errno_text.h"
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
  const bool isSend = kind == TEMBRA_FAILURE_SEND;
  if ((!isSend && kind != TEMBRA_FAILURE_OPENING) || failure->size < sizeof *failure) return EINVAL;
  const tembra::StateLock lock;
  const tembra::Failure& last = isSend ? tembra::lastSend : tembra::lastOpening;
  failure->count = last.count;
  failure->server = last.server;
  failure->cause = last.cause;
  failure->error = last.error;
  std::memset(failure->text, 0, sizeof failure->text);
  tembra::copyCallersText(failure->text, last.error == 0 ? "" : tembra::ErrnoText(last.error).text());
  return 0;
}
