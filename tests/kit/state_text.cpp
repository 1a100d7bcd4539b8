#include "kit/state_text.h"

#include <tembra/association.h>
#include <tembra/globals.h>

#include <cstring>

#include "kit/trace.h"

namespace kit {

std::string stateText() {
  const TembraAssociation& assoc = *TembraAssociation::singleton;
  const int isIdle = __atomic_load_n(&idle, __ATOMIC_ACQUIRE);
  return "state " + std::to_string(assoc.assocState) + " idle " + std::to_string(isIdle) + " last " +
         std::to_string(assoc.lastEventCode) + " cancel " + std::to_string(assoc.cancelTarget) + " radio " +
         std::to_string(assoc.activeRadio) + " cmdtype " + visible({cmdtype, strnlen(cmdtype, sizeof cmdtype)});
}

}  // namespace kit
