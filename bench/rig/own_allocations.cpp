#include "rig/own_allocations.h"

#include <tembra/assoc.h>

#include <cstdlib>
#include <functional>
#include <utility>

#include "rig/outside.h"
#include "rig/receiving.h"

namespace bench {
namespace {

using Call = std::function<void(TembraAssociation&)>;

struct PublicCall {
  const char* name;
  Call call;
};

char kMac[] = "a1:b2:c3:0a:1b:2c";
char kText[] = "Kitchen";

// What blocks for seconds (resetting) is left out: it sends as adding does.
std::vector<PublicCall> commands() {
  return {
      {"getInstance", [](auto&) { TembraAssociation::getInstance(); }},
      {"LCDAssocInit", [](auto&) { TembraAssociation::LCDAssocInit(); }},
      {"registerAssocEventCB", [](auto& assoc) { assoc.registerAssocEventCB(nullptr); }},
      {"addDevZigbeeZwave", [](auto& assoc) { assoc.addDevZigbeeZwave(); }},
      {"removeDevZigbeeZwave", [](auto& assoc) { assoc.removeDevZigbeeZwave(); }},
      {"sendCancelTo", [](auto& assoc) { assoc.sendCancelTo(cancel_both); }},
      {"setDevType", [](auto& assoc) { assoc.setDevType(DEVTYPE_BINARY_SWITCH); }},
      {"setDevType2", [](auto& assoc) { assoc.setDevType2(DEVTYPE_SIREN); }},
      {"setDevName", [](auto& assoc) { assoc.setDevName(kText); }},
      {"setDevLocation", [](auto& assoc) { assoc.setDevLocation(kText); }},
      {"addingDone", [](auto& assoc) { assoc.addingDone(); }},
      {"Hue_initiateAdd", [](auto& assoc) { assoc.Hue_initiateAdd(); }},
      {"Hue_addBridge", [](auto& assoc) { assoc.Hue_addBridge(kMac); }},
      {"Hue_addDev", [](auto& assoc) { assoc.Hue_addDev(kMac, kText); }},
      {"Hue_refreshBridge", [](auto& assoc) { assoc.Hue_refreshBridge(kMac, kText); }},
      {"Hue_remove", [](auto& assoc) { assoc.Hue_remove(kMac); }},
      {"Nest_checkExist", [](auto& assoc) { assoc.Nest_checkExist(); }},
      {"Nest_add", [](auto& assoc) { assoc.Nest_add(kText); }},
      {"Nest_remove", [](auto& assoc) { assoc.Nest_remove(); }},
  };
}

std::vector<PublicCall> classifications() {
  return {
      {"calculateDevId", [](auto& assoc) { assoc.calculateDevId(); }},
      {"ZW_checkNodeExists", [](auto& assoc) { assoc.ZW_checkNodeExists(); }},
      {"ZW_createDeviceType", [](auto& assoc) { assoc.ZW_createDeviceType(); }},
      {"ZW_removeNode", [](auto& assoc) { assoc.ZW_removeNode(); }},
      {"removeAllDevices", [](auto& assoc) { assoc.removeAllDevices(); }},
      {"zb_createAnyDevice", [](auto& assoc) { assoc.zb_createAnyDevice(); }},
      {"zb_removeNode", [](auto& assoc) { assoc.zb_removeNode(7); }},
      {"GetDeviceTypeInStringFormat", [](auto& assoc) { assoc.GetDeviceTypeInStringFormat(0x15); }},
      {"GenericIndexType", [](auto& assoc) { assoc.GenericIndexType(DEVTYPE_SIREN); }},
      {"cclassNum", [](auto&) { cclassNum("DOOR LOCK"); }},
      {"cclassStr", [](auto&) { cclassStr(0x62); }},
  };
}

// Each leaves the connection closed.
std::vector<PublicCall> connectionCalls() {
  return {
      {"ConnectToServers", [](auto& assoc) { assoc.ConnectToServers(); }},
      {"checkAssocConnection and closeAssocConnection",
       [](auto& assoc) {
         assoc.checkAssocConnection();
         assoc.closeAssocConnection();
       }},
  };
}

void describeDevices(TembraAssociation& assoc) {
  assoc.zwNodeRx = {};
  assoc.zwNodeRx.nodeId = 5;
  assoc.zwNodeRx.commandClasses[0] = 0xFF;
  assoc.zwNodeRx.basicClass = 4;
  assoc.zbDevice = {};
  assoc.zbDevice.clusters[0].cluster = 0xFFFF;
}

// The first call of a kind may make the C library get ready (buffers, symbols), so the second one counts.
std::size_t allocationsOf(const Call& call, TembraAssociation& assoc) {
  call(assoc);
  own_code::start();
  {
    const Inside inside;
    call(assoc);
  }
  own_code::stop();
  return own_code::allocations();
}

}  // namespace

std::size_t allocationsForDatagrams(const Datagram& datagram, int count) {
  const Daemons daemons;
  LibraryReceiving library;
  drain(library, daemons, datagram, count);
  own_code::start();
  drain(library, daemons, datagram, count);
  own_code::stop();
  return own_code::allocations();
}

std::vector<CallCount> allocationsOfPublicCalls() {
  const Daemons daemons;
  TembraAssociation& assoc = *TembraAssociation::LCDAssocInit();
  std::vector<CallCount> counts;
  const auto countAll = [&](const std::vector<PublicCall>& calls) {
    for (const auto& [name, call] : calls) counts.push_back({name, allocationsOf(call, assoc)});
  };
  {
    const LibraryReceiving open;
    describeDevices(assoc);
    countAll(commands());
    countAll(classifications());
  }
  countAll(connectionCalls());
  return counts;
}

}  // namespace bench
