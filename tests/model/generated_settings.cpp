#include "generator.h"
#include "operations.h"

namespace oracle {
namespace {

constexpr int kStates[] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 1000, -1};

}  // namespace

Step Generator::anyWait() {
  const int left = static_cast<int>(model_.left);
  if (chance(60)) return call("wait", left);
  const int others[] = {1, 7, left - 1 > 0 ? left - 1 : 1, 60, 180, 400};
  return call("wait", oneOf(others));
}

Step Generator::anySetting() {
  switch (below(9)) {
    case 8:
      return call("at rest");
    case 0:
      return call("authorised", below(2));
    case 1:
      return call("sends fail", below(4));
    case 2:
      return call("registerAssocEventCB", chance(70) ? 1 : 0);
    case 3:
      return call("role", chance(25) ? 1 : 2 + below(5));
    case 4:
    case 5:
      return call("assocState =", oneOf(kStates));
    default:
      return anyCallbackPlan();
  }
}

Step Generator::anyCallbackPlan() {
  Step plan = call("the callback calls");
  switch (below(11)) {
    case 0:
      plan.inner = {call("setDevType", anyType())};
      break;
    case 1:
      plan.inner = {call("setDevType2", anyType())};
      break;
    case 2:
      plan.inner = {call("setDevName", anyName())};
      break;
    case 3:
      plan.inner = {call("setDevLocation", anyName())};
      break;
    case 4:
      plan.inner = {call("addingDone")};
      break;
    case 5:
      plan.inner = {call("sendCancelTo", anyRadioNumber())};
      break;
    case 6:
      plan.inner = {chance(50) ? call("addDevZigbeeZwave") : call("registerAssocEventCB", 0)};
      break;
    case 7:
      plan.inner = {call("overwriteEvent", below(256))};
      break;
    default:
      break;
  }
  return plan;
}

}  // namespace oracle
