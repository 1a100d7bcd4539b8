// What has to come of a node: the rules of classification, read once more and as plainly as possible.
#ifndef TEMBRA_TESTS_ORACLE_NODE_READING_H
#define TEMBRA_TESTS_ORACLE_NODE_READING_H

#include <tembra/records.h>

#include <string>

#include "effect.h"
#include "sub_types.h"

namespace oracle {

/// What a classification leaves behind.
struct NodeOutcome {
  int result = 0;
  Lines log;
  Lines formatted;    // the texts of those lines that are made of pieces
  ZwNodeInfo work{};  // the working copy
  int classifiedType = 0;
  std::string name;  // devName
  Capabilities raised{};
};

/// Classification of `received` as device `id`, where the working copy and the proposed type were those of `before`.
NodeOutcome readNode(const ZwNodeInfo& received, const NodeOutcome& before, int id);

/// The index table of `values`, written into the working copy of `outcome`.
void readValues(const ZwNodeInfo& received, NodeOutcome& outcome);

}  // namespace oracle

#endif
