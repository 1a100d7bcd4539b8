// Classification of a new Z-Wave node, and the working copy that is handed over later.
#include <tembra/association.h>
#include <tembra/globals.h>

#include "classify/received_device.h"
#include "classify/zwave/node_classes.h"
#include "support/device_type_name.h"
#include "support/log.h"
#include "support/state_lock.h"
#include "support/text.h"

namespace tembra {
namespace {

constexpr unsigned char kListEnd = 0xFF;  // of a received list of command classes; the working copy's ends with 0
constexpr std::size_t kListRoom = sizeof ZwNodeInfo::commandClasses;

// Copies the list into the working copy, and logs it. A received list without an end fills the field. Then there
// is no room for the working copy's end, and the basic class behind the field is left alone.
void copyCommandClasses(TembraAssociation& assoc) {
  LogLine line(assoc, Level::kProgress, "node ");  // [sic] no prefix
  line << assoc.zwNodeRx.nodeId << " Supported Command Classes:";
  for (std::size_t i = 0; i < kListRoom && assoc.zwNodeRx.commandClasses[i] != kListEnd; ++i) {
    const unsigned char commandClass = assoc.zwNodeRx.commandClasses[i];
    assoc.zwNodeWork.commandClasses[i] = commandClass;
    if (i + 1 < kListRoom) assoc.zwNodeWork.commandClasses[i + 1] = 0;
    line << "0x" << Hex{commandClass, 2} << " ";
  }
}

bool hasAll(TembraAssociation& assoc, const unsigned char (&required)[NodeClass::kMostRequired]) {
  for (const unsigned char commandClass : required) {
    if (commandClass == 0) break;
    if (assoc.CommandExists(assoc.zwNodeRx.commandClasses, commandClass) == 0) return false;
  }
  return required[0] != 0;
}

DevType classify(TembraAssociation& assoc) {
  const auto& row = findNodeClass(assoc.zwNodeRx.genericClass, assoc.zwNodeRx.specificClass);
  const DevType type = hasAll(assoc, row.required) ? row.typeIfRequired : row.type;
  assoc.zwNodeWork.proposedType = type;
  log(assoc, Level::kProgress, row.text);
  return type;
}

}  // namespace

bool classifyNode(TembraAssociation& assoc) {
  copyCommandClasses(assoc);
  ZwNodeInfo& received = assoc.zwNodeRx;
  if (received.basicClass == 0) {
    log(assoc, Level::kError, TEMBRA_LOG_PREFIX "BasicType is 0,so skipping Device addition");
    return false;
  }
  const DevType type = classify(assoc);
  if (type == DEVTYPE_GENERIC_DEVICE) assoc.ZW_indexToEnum(reinterpret_cast<unsigned char*>(received.values));
  assoc.zwNodeWork.deviceKind = DEVICE_ZWAVE;
  assoc.zwNodeWork.nodeId = received.nodeId;
  assoc.classifiedType = type;
  setNumberedName(assoc.devName, DeviceTypeName(type).text(), DevId);
  copyText(assoc.zwNodeWork.name, assoc.devName);
  assoc.zwNodeWork.requestMark = MARK_ADDED;
  LogLine(assoc, Level::kProgress, TEMBRA_LOG_PREFIX "Device Basic Type:0x")
      << Hex{received.basicClass, 2} << ", Generic Type:0x" << Hex{received.genericClass, 2} << ", Specific Type:0x"
      << Hex{received.specificClass, 2} << ",Nodeid:" << received.nodeId;
  return true;
}

}  // namespace tembra

using namespace tembra;

int TembraAssociation::CommandExists(unsigned char* list, unsigned char commandClass) {
  const StateLock lock;
  for (std::size_t i = 0; i < kListRoom && list[i] != kListEnd; ++i) {
    if (list[i] != commandClass) continue;
    log(*this, Level::kProgress, TEMBRA_LOG_PREFIX "cmd matched");
    return 1;
  }
  return 0;
}

int TembraAssociation::ZW_createDeviceType() {
  const StateLock lock;
  DevId = calculateDevId();
  return classifyNode(*this) ? 1 : 0;
}
