// A Z-Wave node: the reasons are what the library logs while it decides, and the capabilities that it raises.
#include <tembra/globals.h>

#include "cli/classification/classification.h"
#include "cli/classification/log_capture.h"
#include "cli/words/texts.h"

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

struct Capability {
  const char* name;
  const decltype(BasicFlag)& raised;
};

std::string capabilitiesText() {
  const Capability capabilities[] = {{"BasicFlag", BasicFlag},
                                     {"MultilevelFlag", MultilevelFlag},
                                     {"ZwAcExtFlag", ZwAcExtFlag},
                                     {"SensorBinaryFlag", SensorBinaryFlag}};
  std::string text;
  for (const Capability& capability : capabilities) {
    if (capability.raised != 0) text.append(text.empty() ? "" : ", ").append(capability.name);
  }
  return text.empty() ? "none" : text;
}

void explainGeneric(const ZwNodeInfo& node, std::vector<std::string>& reasons) {
  reasons.push_back("to choose from: by the capabilities that the values raised: " + capabilitiesText());
  if (node.indexes[0].type != INDEX_NONE || node.indexes[1].type == INDEX_NONE) return;
  reasons.emplace_back("the first value has no index type: the table begins with its end, what follows is not seen");
}

void explainTyped(const ZwNodeInfo& node, std::vector<std::string>& reasons) {
  reasons.push_back("to choose from: what type " + std::to_string(node.proposedType) + " has");
  if (node.values[0].commandClass == 0) return;
  reasons.emplace_back("values ignored: only a generic device has an index table");
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
  for (const std::string& line : log.take()) result.reasons.push_back("log: " + line);
  if (!result.classified) return result;
  result.type = static_cast<DevType>(service.zwNodeWork.proposedType);
  result.name = fieldText(service.devName);
  result.slots = slotsOf(service.zwNodeWork);
  result.subTypes = subTypesOf(service, service.zwNodeWork.proposedType);
  const auto explain = result.type == DEVTYPE_GENERIC_DEVICE ? explainGeneric : explainTyped;
  explain(service.zwNodeWork, result.reasons);
  return result;
}

}  // namespace tembra::cli
