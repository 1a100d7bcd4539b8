// What the library's rules make of a device, and why.
#ifndef TEMBRA_CLI_CLASSIFICATION_H
#define TEMBRA_CLI_CLASSIFICATION_H

#include <tembra/assoc.h>

#include <string>
#include <vector>

namespace tembra::cli {

struct IndexSlot {
  int number;
  int type;   ///< IndexType
  int place;  ///< instance (Z-Wave) or endpoint (ZigBee)
};

struct Classification {
  std::string radio;
  bool classified = false;
  DevType type = DEVTYPE_UNKNOWN;
  std::string name;
  std::vector<IndexSlot> slots;
  std::vector<DevType> subTypes;
  std::vector<std::string> reasons;
};

[[nodiscard]] Classification classify(TembraAssociation& service, const ZwNodeInfo& node);
[[nodiscard]] Classification classify(TembraAssociation& service, const ZbDeviceInfo& device);

/// The types that may be chosen instead of `proposed`.
[[nodiscard]] std::vector<DevType> subTypesOf(TembraAssociation& service, int proposed);

}  // namespace tembra::cli

#endif
