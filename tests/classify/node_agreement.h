// What the library makes of a Z-Wave node against what the oracle makes of it.
#ifndef TEMBRA_TESTS_CLASSIFY_NODE_AGREEMENT_H
#define TEMBRA_TESTS_CLASSIFY_NODE_AGREEMENT_H

#include <tembra/association.h>

#include <string>

#include "oracle/node_reading.h"

namespace classify {

using Outcome = oracle::NodeOutcome;

/// What the service does with `received`; the working copy and the proposed type are those of `before` first.
Outcome classifyBy(TembraAssociation& assoc, const ZwNodeInfo& received, const Outcome& before);

/// The same for the values alone.
Outcome deriveIndexesBy(TembraAssociation& assoc, const ZwNodeInfo& received, const Outcome& before);

/// An outcome whose working copy holds a pattern, so that every byte that is written is seen.
Outcome marked();

/// Whether both are the same; a difference is a test failure that names `what`.
bool expectSame(const Outcome& actual, const Outcome& expected, const std::string& what);

}  // namespace classify

#endif
