// What has to come of a node: the rules of classification, read once more and as plainly as possible.
#ifndef TEMBRA_TESTS_CLASSIFY_NODE_READING_H
#define TEMBRA_TESTS_CLASSIFY_NODE_READING_H

#include <tembra/association.h>

#include <string>

namespace classify {

/// The capabilities that the values of a generic device raise.
struct Capabilities {
  int basic = 0;
  int multilevel = 0;
  int binarySensor = 0;
  int acExtender = 0;
  bool operator==(const Capabilities&) const = default;
};

/// What a classification leaves behind.
struct Outcome {
  int result = 0;
  std::string trace;  // as kit::Router::takeTrace gives it
  ZwNodeInfo work{};  // the working copy
  int classifiedType = 0;
  std::string name;  // devName
  Capabilities raised{};
};

/// Classification of `received` as device `id`, where the working copy and the proposed type were those of `before`.
Outcome readNode(const ZwNodeInfo& received, const Outcome& before, int id);

/// The index table of `values`, written into the working copy of `outcome`.
void readValues(const ZwNodeInfo& received, Outcome& outcome);

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
