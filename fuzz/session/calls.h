// Everything that a front end may call while a session runs.
#ifndef TEMBRA_FUZZ_SESSION_CALLS_H
#define TEMBRA_FUZZ_SESSION_CALLS_H

#include <tembra/association.h>

#include "support/object_check.h"
#include "support/script.h"

namespace fuzz {

/// The calls of a whole add or remove, by which seeds choose them; there are many more.
enum class Call : unsigned char {
  kOpen,
  kClose,
  kRole,
  kAdd,
  kRemove,
  kSetType,
  kSetName,
  kAddingDone,
  kHueDiscover,
  kNestAdd
};

struct FrontEnd {
  TembraAssociation& assoc;
  Script& script;
  ObjectCheck& check;
  bool sendsOwnBytes = false;  // what it sends itself looks as it likes
};

/// Makes the call that the script chooses, with arguments from the script.
void makeCall(FrontEnd& frontEnd);

}  // namespace fuzz

#endif
