// The answers of the radios' servers.
#include <tembra/events.h>
#include <tembra/records.h>

#include <algorithm>

#include "campaign/reader.h"

namespace campaign {

void Reader::zwave(Time now) {
  const unsigned node = received<ZwNodeInfo>().nodeId;
  switch (awaits_) {
    case Awaits::kAnyRadio:
      cancelOther(now, Server::kZwave);
      awaits_ = node == 255 ? Awaits::kNothing : Awaits::kIdentity;
      idle_ = node == 255;
      wait_ = node == 255 ? wait_ : kJoiningWait;
      return tell(now, node == 255 ? EVENT_ADD_FAILED : EVENT_ADDING);
    case Awaits::kIdentity:
      return zwaveIdentified(now, node);
    case Awaits::kInfo:
      awaits_ = Awaits::kNothing;
      idle_ = idle_ || received<ZwNodeInfo>().basicClass == 0;
      joins_ = Server::kZwave;
      expected_.added = {Server::kZwave, node, latestLength_ == sizeof(ZwNodeInfo)};
      return tell(now, received<ZwNodeInfo>().basicClass == 0 ? static_cast<int>(EVENT_ADD_FAILED) : kOffered);
    case Awaits::kRemoval:
      return zwaveLeft(now, node);
    case Awaits::kClosing:
      awaits_ = Awaits::kNothing;
      toCancel_.clear();
      return becomeIdle(now);
    case Awaits::kNothing:
      return;
  }
}

void Reader::zwaveIdentified(Time now, unsigned node) {
  const bool known = isStored(node);
  const bool failed = !known && (node == 0 || node == 255);
  awaits_ = known || failed ? Awaits::kNothing : Awaits::kInfo;
  if (known || failed) {
    idle_ = true;
  } else {
    wait_ = kDescribingWait;
  }
  tell(now, known ? EVENT_ALREADY_ADDED : failed ? EVENT_ADD_FAILED : EVENT_GETTING_INFO);
}

void Reader::zwaveLeft(Time now, unsigned node) {
  cancelOther(now, Server::kZwave);
  if (node == 0 || node == 255) {
    awaits_ = Awaits::kNothing;
    tell(now, EVENT_REMOVED_UNKNOWN);
    return becomeIdle(now);
  }
  const bool known = isStored(node);
  if (known) {
    send(now, "ha zwave " + std::to_string(node) + " removed");
    expected_.removed = {Server::kZwave, node, true};
  }
  awaits_ = Awaits::kClosing;
  wait_ = kLeavingWait;
  idle_ = false;
  tell(now, known ? EVENT_REMOVED : EVENT_REMOVED_UNKNOWN);
}

void Reader::zigbee(Time now) {
  const auto device = received<ZbDeviceInfo>();
  // A description that comes after the device was created takes its place, also in what the HA server is told.
  if (joins_ == Server::kZigbee) expected_.added = {Server::kZigbee, device.shortAddress, false};
  if (awaits_ == Awaits::kAnyRadio) return zigbeeJoins(now, device.msgCode);
  if (awaits_ == Awaits::kRemoval) return zigbeeLeft(now, device.msgCode);
}

void Reader::zigbeeJoins(Time now, int status) {
  const auto device = received<ZbDeviceInfo>();
  switch (status) {
    case 1:
      cancelOther(now, Server::kZigbee);
      wait_ = kJoiningWait;
      idle_ = false;
      return tell(now, EVENT_ADDING);
    case 3:
      return;
    case 6:
      wait_ = kDescribingWait;
      idle_ = false;
      return tell(now, EVENT_GETTING_INFO);
    case 10:
      awaits_ = Awaits::kNothing;
      joins_ = Server::kZigbee;
      expected_.added = {Server::kZigbee, device.shortAddress,
                         latestLength_ == sizeof device && device.clusters[0].cluster != 0};
      return tell(now, kOffered);
    case 2:
    case 11:
      awaits_ = Awaits::kNothing;
      idle_ = true;
      return tell(now, EVENT_ADD_FAILED);
    default:
      awaits_ = Awaits::kNothing;
  }
}

void Reader::zigbeeLeft(Time now, int status) {
  if (status != 2 && status != 12) return;
  const unsigned address = received<ZbDeviceInfo>().shortAddress;
  const auto hasAddress = [address](const StoredDevice& device) { return device.zigbeeAddress == address; };
  const bool known = std::any_of(record_.before.devices.begin(), record_.before.devices.end(), hasAddress);
  awaits_ = Awaits::kNothing;
  cancelOther(now, Server::kZigbee);
  const bool leaves = known && status == 2;
  if (leaves) {
    send(now, "ha zigbee " + std::to_string(address) + " removed");
    expected_.removed = {Server::kZigbee, address, true};
  }
  tell(now, leaves ? EVENT_REMOVED : EVENT_REMOVED_UNKNOWN);
  toCancel_.clear();
  becomeIdle(now);
}

}  // namespace campaign
