// Z-Wave device classes: which device type a node of a generic and a specific class is, and what the log says of it.
#ifndef TEMBRA_CLASSIFY_ZWAVE_NODE_CLASSES_H
#define TEMBRA_CLASSIFY_ZWAVE_NODE_CLASSES_H

#include <tembra/vocabulary.h>

namespace tembra {

/// One row of the classification table.
struct NodeClass {
  static constexpr short kAny = -1;
  static constexpr int kMostRequired = 2;

  short generic;   ///< Z-Wave generic device class, or kAny
  short specific;  ///< Z-Wave specific device class, or kAny
  DevType type;
  const char* text;  ///< log line, prefix included

  unsigned char required[kMostRequired] = {};  ///< command classes (0: none) that together make it another type
  DevType typeIfRequired = DEVTYPE_UNKNOWN;    ///< that type

  [[nodiscard]] constexpr bool covers(unsigned char genericClass, unsigned char specificClass) const {
    return (generic == genericClass || generic == kAny) && (specific == specificClass || specific == kAny);
  }
};

/// The row that decides; there always is one.
const NodeClass& findNodeClass(unsigned char generic, unsigned char specific);

}  // namespace tembra

#endif
