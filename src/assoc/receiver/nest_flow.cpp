// Answers of the Nest server: each becomes one event.
#include <tembra/association.h>

#include <cstring>
#include <optional>

#include "assoc/receiver/flow.h"
#include "support/log.h"
#include "support/shared_state.h"

namespace tembra {
namespace {

struct NestResult {
  NestAnswerCode command;
  std::optional<int> status;  // none: any
  AssocEventCode event;
};

constexpr NestResult kNestResults[] = {
    {NEST_ANSWER_100, {}, EVENT_NEST_44}, {NEST_ANSWER_121, {}, EVENT_NEST_41}, {NEST_ANSWER_122, {}, EVENT_NEST_43},
    {NEST_ANSWER_123, {}, EVENT_NEST_42}, {NEST_ANSWER_124, 0, EVENT_NEST_45},  {NEST_ANSWER_124, -1, EVENT_NEST_46},
};

const NestResult* findResult(const NestAnswer& answer) {
  for (const NestResult& result : kNestResults) {
    if (result.command == answer.command && result.status.value_or(answer.status) == answer.status) return &result;
  }
  return nullptr;
}

// False when the flow has ended with the connection it belonged to.
bool handleAnswer(const Flow& flow, const NestAnswer& answer) {
  const NestResult* result = findResult(answer);
  if (result == nullptr) {
    if (answer.command != NEST_ANSWER_124) {
      log(flow.assoc, Level::kError, TEMBRA_LOG_PREFIX "Got unknown command from NEST");
    }
    return !flow.connection.isSuperseded();
  }
  if (result->event == EVENT_NEST_44) std::memcpy(flow.events.c.payload, &answer, sizeof answer);
  return flow.tell(flow.events.c, result->event, SERVER_NEST);
}

}  // namespace

void handleNest(const Flow& flow) {
  NestAnswer answer;
  std::memcpy(&answer, flow.datagram, sizeof answer);
  if (!handleAnswer(flow, answer)) return;
  setIdle(true);
  closeForWebServer(flow);
}

}  // namespace tembra
