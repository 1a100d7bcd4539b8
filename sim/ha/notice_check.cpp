#include "sim/ha/notice_check.h"

#include <cstring>

#include "sim/core/record_bytes.h"
#include "tembra/vocabulary.h"

namespace tembra::sim {
namespace {

using Mistakes = std::vector<std::string_view>;

void checkZwave(const ZwNodeInfo& node, Mistakes& mistakes) {
  const bool added = node.requestMark == MARK_ADDED;
  if (!added && node.requestMark != MARK_REMOVED)
    mistakes.emplace_back("a node block that is neither added nor removed");
  if (node.deviceKind != DEVICE_ZWAVE) mistakes.emplace_back("a node block whose device kind is not Z-Wave");
  if (added && !terminated(node.name)) mistakes.emplace_back("a node block whose name has no end");
  if (added && !terminated(node.location)) mistakes.emplace_back("a node block whose location has no end");
}

// A name of 32 and more characters runs on into the location: only the end of both is certain.
void checkZigbee(const ZbDeviceInfo& device, Mistakes& mistakes) {
  if (device.msgCode != ZIGBEE_NOTICE_ADDED && device.msgCode != ZIGBEE_NOTICE_REMOVED) {
    mistakes.emplace_back("a ZigBee record that is neither added nor removed");
  }
  if (device.msgCode == ZIGBEE_NOTICE_ADDED && !terminated(device.location)) {
    mistakes.emplace_back("a ZigBee record whose location has no end");
  }
}

}  // namespace

bool isRemoveAll(const HaNotice& notice) {
  return notice.recordKind == RECORD_ZIGBEE && std::memcmp(notice.record, kRemoveAllText, sizeof kRemoveAllText) == 0;
}

// The bytes behind the record have no meaning: a sender need not clear them.
std::vector<std::string_view> mistakesIn(const HaNotice& notice) {
  Mistakes mistakes;
  if (notice.recordKind != RECORD_ZIGBEE && notice.recordKind != RECORD_ZWAVE) return {"a notice of an unknown kind"};
  if (notice.recordKind == RECORD_ZWAVE) checkZwave(recordFrom<ZwNodeInfo>(notice.record), mistakes);
  if (notice.recordKind == RECORD_ZIGBEE && !isRemoveAll(notice)) {
    checkZigbee(recordFrom<ZbDeviceInfo>(notice.record), mistakes);
  }
  return mistakes;
}

}  // namespace tembra::sim
