// Every operation that reads the device database.
#ifndef TEMBRA_FUZZ_SUPPORT_READERS_H
#define TEMBRA_FUZZ_SUPPORT_READERS_H

#include <tembra/association.h>

#include <cstdlib>
#include <cstring>
#include <memory>

#include "support/invariant.h"

namespace fuzz {

/// Looks for one Z-Wave node and one ZigBee address, lists the bridges and asks for the next id.
inline void readDatabase(TembraAssociation& assoc, unsigned char node, unsigned short address) {
  assoc.zwNodeRx.nodeId = node;
  const int exists = assoc.ZW_checkNodeExists();
  require(exists == 0 || exists == 1, "a node is known or not");
  const int removed = assoc.ZW_removeNode();
  require(removed == 0 || removed == -1, "a removal looks into the database or fails");
  const int found = assoc.zb_removeNode(address);
  require(found == 0 || found == -1, "a ZigBee device is found or not");
  require(isTerminated(assoc.removedName), "the removed device's name ends");
  const std::unique_ptr<char, decltype(&std::free)> json(assoc.Hue_getBridgeList(), &std::free);
  if (json != nullptr) require(std::strncmp(json.get(), R"({"MAClist":[)", 12) == 0, "the bridge list is a list");
  assoc.calculateDevId();
}

}  // namespace fuzz

#endif
