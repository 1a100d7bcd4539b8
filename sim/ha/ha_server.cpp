#include "sim/ha/ha_server.h"

#include <exception>
#include <utility>

#include "sim/core/record_bytes.h"
#include "sim/ha/notice_check.h"
#include "sim/zigbee/descriptions.h"
#include "tembra/vocabulary.h"

namespace tembra::sim {

bool holdsNode(const DeviceRecord& record, unsigned char node) {
  return record.radioKind == RADIO_ZWAVE && static_cast<unsigned char>(record.zwaveNode) == node;
}

HaServer::HaServer(Surroundings surroundings, DeviceList& list, Notes notes)
    : Daemon(kHaServer, sizeof(HaNotice), surroundings), list_(list), notes_(std::move(notes)) {}

void HaServer::handle(Bytes datagram) {
  const auto notice = recordFrom<HaNotice>(datagram);
  for (const std::string_view mistake : mistakesIn(notice)) found(mistake);
  try {
    apply(notice);
  } catch (const std::exception& failure) {
    surroundings().journal.trouble(failure.what());
  }
}

void HaServer::apply(const HaNotice& notice) {
  if (isRemoveAll(notice)) {
    heard("drop all devices");
    drop(
        "every device", [](const DeviceRecord&) { return true; }, Happening::kRemovedAll);
  } else if (notice.recordKind == RECORD_ZWAVE) {
    apply(recordFrom<ZwNodeInfo>(notice.record));
  } else if (notice.recordKind == RECORD_ZIGBEE) {
    apply(recordFrom<ZbDeviceInfo>(notice.record));
  }
}

void HaServer::apply(const ZwNodeInfo& node) {
  const std::string text = "node " + std::to_string(node.nodeId);
  const auto sameNode = [&node](const DeviceRecord& record) { return holdsNode(record, node.nodeId); };
  if (node.requestMark == MARK_ADDED) {
    heard(text + " is added: " + textIn(node.name) + ", " + textIn(node.location));
    replace(newDeviceFrom(node), notes_.zwave(node.nodeId), sameNode);
  } else if (node.requestMark == MARK_REMOVED) {
    heard(text + " is removed");
    drop(text, sameNode, Happening::kRemoved);
  }
}

void HaServer::apply(const ZbDeviceInfo& device) {
  const std::string text = "ZigBee " + addressText(device.shortAddress);
  const auto sameDevice = [&device](const DeviceRecord& record) {
    return record.radioKind == kRadioZigbee && record.zigbeeAddress == device.shortAddress;
  };
  if (device.msgCode == ZIGBEE_NOTICE_ADDED) {
    heard(text + " is added: " + textIn(device.name) + ", " + textIn(device.location));
    replace(newDeviceFrom(device), notes_.zigbee(device.shortAddress), sameDevice);
  } else if (device.msgCode == ZIGBEE_NOTICE_REMOVED) {
    heard(text + " is removed");
    drop(text, sameDevice, Happening::kRemoved);
  }
}

// A device that is handed over once more replaces itself.
void HaServer::replace(const NewDevice& device, std::string_view note, const DeviceList::Test& sameDevice) {
  list_.drop(sameDevice);
  store(device, note);
}

void HaServer::store(const NewDevice& device, std::string_view note) {
  const int id = list_.add(device, note);
  said(self().name, "database", "device " + std::to_string(id) + " stored: " + device.name);
  surroundings().happenings.happened(Happening::kAdded);
}

void HaServer::drop(std::string_view what, const DeviceList::Test& test, Happening happening) {
  const int dropped = list_.drop(test);
  said(self().name, "database", std::string(what) + " dropped, " + std::to_string(dropped) + " record(s)");
  surroundings().happenings.happened(happening);
}

}  // namespace tembra::sim
