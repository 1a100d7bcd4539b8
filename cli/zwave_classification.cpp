// A Z-Wave node: the reasons are what the library logs while it decides.
#include <cstring>

#include "classification.h"
#include "log_capture.h"
#include "texts.h"

namespace tembra::cli {
namespace {

std::vector<IndexSlot> slotsOf(const ZwNodeInfo& node) {
  std::vector<IndexSlot> slots;
  for (const ZwIndexEntry& entry : node.indexes) {
    const auto number = static_cast<int>(slots.size()) + 1;
    if (entry.type == INDEX_NONE) break;
    slots.push_back({number, entry.type, entry.instance});
  }
  return slots;
}

}  // namespace

std::vector<DevType> subTypesOf(TembraAssociation& service, int proposed) {
  DevType list[sizeof(DeviceReport::subTypes) / sizeof(DevType)] = {};
  service.listSubDevType(static_cast<DevType>(proposed), list);
  std::vector<DevType> types;
  for (const DevType* type = list; *type != DEVTYPE_UNKNOWN; ++type) types.push_back(*type);
  return types;
}

Classification classify(TembraAssociation& service, const ZwNodeInfo& node) {
  service.zwNodeRx = node;
  service.zwNodeWork = node;
  LogCapture log;
  Classification result;
  result.radio = "Z-Wave";
  result.classified = service.ZW_createDeviceType() != 0;
  result.reasons = log.take();
  if (!result.classified) return result;
  result.type = static_cast<DevType>(service.zwNodeWork.proposedType);
  result.name = fieldText(service.devName);
  result.slots = slotsOf(service.zwNodeWork);
  result.subTypes = subTypesOf(service, service.zwNodeWork.proposedType);
  return result;
}

}  // namespace tembra::cli
