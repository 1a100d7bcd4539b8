// How each call of the library can fail, and which calls cannot.
#ifndef TEMBRA_TESTS_RELIABILITY_KINDS_OF_FAULTS_H
#define TEMBRA_TESTS_RELIABILITY_KINDS_OF_FAULTS_H

#include <set>
#include <string>
#include <vector>

#include "kit/faults.h"

struct FaultKind {
  kit::Call call;
  const char* function;     // as the linker knows it
  std::vector<int> errors;  // errno, or Depot's code, or what else the function says
  bool isCertain = true;    // false: a wait that does not come about when the other thread is faster
};

const std::vector<FaultKind>& faultKinds();
const FaultKind& kindOf(kit::Call call);

/// What the library imports and what cannot fail with the arguments that it gives; and what other tests make fail: the
/// router's own libraries.
const std::set<std::string>& infallibleImports();

#endif
