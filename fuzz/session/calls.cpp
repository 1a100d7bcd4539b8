#include "session/calls.h"

#include <tembra/endpoints.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <string_view>

#include "support/invariant.h"
#include "support/stage.h"

namespace fuzz {
namespace {

template <typename T>
T smallEnum(Script& script) {
  return static_cast<T>(script.smallNumber());
}

void chooseRole(FrontEnd& front) {
  static constexpr TembraAssociation* (*kRoles[])() = {
      &TembraAssociation::webServerAssocInit, &TembraAssociation::LCDAssocInit,
      &TembraAssociation::cloudappsAssocInit, &TembraAssociation::meshServerAssocInit,
      &TembraAssociation::FreeUsr1AssocInit,  &TembraAssociation::FreeUsr2AssocInit,
  };
  const std::size_t role = front.script.choose(std::size(kRoles));
  require(kRoles[role]() == &front.assoc, "there is one object");
  front.check.roleChosen(static_cast<int>(role) + 1);
}

void chooseCallback(FrontEnd& front) {
  void (*const callback)(AssocEvent*) = front.script.choose(4) == 0 ? nullptr : &hear;
  front.assoc.registerAssocEventCB(callback);
  front.check.callbackChosen(callback);
}

// One address is written badly, resolved, and set right again.
void misplaceEndpoint(FrontEnd& front) {
  char** const texts[] = {&assoc_adr,  &ha_assoc_adr,   &haserver_adr,    &ozw_adr,
                          &zigbee_adr, &hue_server_adr, &nest_server_adr, &web_adr};
  char** const chosen = texts[front.script.choose(std::size(texts))];
  char* const right = *chosen;
  const CallersText wrong = front.script.text();
  *chosen = wrong.get();
  require(front.assoc.ConnectToServers() == 0, "addresses are resolved without a result");
  *chosen = right;
  front.assoc.ConnectToServers();
}

void openConnection(FrontEnd& front) {
  const bool wasOpen = front.assoc.sock != 0;
  const int result = front.assoc.checkAssocConnection();
  require(result == 0 || result == -1, "opening succeeds or fails");
  require(!wasOpen || result == -1, "an open connection is not opened again");
}

void sendOwnDatagram(FrontEnd& front) {
  static constexpr std::size_t kLengths[] = {
      0, sizeof(ZigbeeCommand), sizeof(ZwaveCommand), sizeof(HueCommand), sizeof(NestCommand), sizeof(HaNotice), 1};
  const auto type = smallEnum<ServerType>(front.script);
  const bool known = type > 0 && static_cast<std::size_t>(type) < std::size(kLengths);
  const ExactBytes datagram(known ? kLengths[type] : 1);
  std::ranges::copy(front.script.take(front.script.byte() % (datagram.size() + 1)), datagram.data());
  front.sendsOwnBytes = true;
  front.assoc.sendToServers(type, datagram.data());
  front.sendsOwnBytes = false;
}

// A list as its user must give it: with an end, or as long as can be read.
ExactBytes list(Script& script, std::size_t most, std::size_t entry, unsigned char end) {
  const auto given = script.take(script.word() % (most + 1));
  const std::size_t whole = given.size() / entry * entry;
  const bool ends = whole < most;
  ExactBytes bytes(ends ? whole + entry : most);
  std::ranges::copy(given.first(whole), bytes.data());
  if (ends) bytes.data()[whole] = end;
  return bytes;
}

void lookForCommandClass(FrontEnd& front) {
  const ExactBytes classes = list(front.script, sizeof ZwNodeInfo::commandClasses, 1, 0xFF);
  const int exists = front.assoc.CommandExists(classes.data(), front.script.byte());
  require(exists == 0 || exists == 1, "a command class exists or does not");
}

void deriveIndexes(FrontEnd& front) {
  const ExactBytes triples = list(front.script, sizeof ZwNodeInfo::values, sizeof(ZwValueTriple), 0);
  front.assoc.ZW_indexToEnum(triples.data());
}

void listSubTypes(FrontEnd& front) {
  DevType types[6] = {};
  const DevType* last = front.assoc.listSubDevType(smallEnum<DevType>(front.script), types);
  require(last >= types && last < types + std::size(types), "at most six sub-types are listed");
}

void listBridges(FrontEnd& front) {
  const std::unique_ptr<char, decltype(&std::free)> json(front.assoc.Hue_getBridgeList(), &std::free);
  if (json == nullptr) return;
  const std::string_view text(json.get());
  require(text.starts_with(R"({"MAClist":[)") && text.ends_with("]}"), "the bridge list is whole");
}

void withTwoTexts(FrontEnd& front, unsigned char* (TembraAssociation::*call)(char*, char*)) {
  const CallersText mac = front.script.text();
  const CallersText text = front.script.text();
  require(*(front.assoc.*call)(mac.get(), text.get()) == 0, "a Hue command is an operation");
}

void withText(FrontEnd& front, unsigned char* (TembraAssociation::*call)(char*)) {
  const CallersText text = front.script.text();
  require(*(front.assoc.*call)(text.get()) == 0, "a command to an IP device is an operation");
}

// In the order of Call, then the rest.
constexpr void (*kCalls[])(FrontEnd&) = {
    &openConnection,
    [](FrontEnd& front) { front.assoc.closeAssocConnection(); },
    &chooseRole,
    [](FrontEnd& front) { front.assoc.addDevZigbeeZwave(); },
    [](FrontEnd& front) { front.assoc.removeDevZigbeeZwave(); },
    [](FrontEnd& front) { front.assoc.setDevType(smallEnum<DevType>(front.script)); },
    [](FrontEnd& front) { front.assoc.setDevName(front.script.text().get()); },
    [](FrontEnd& front) { front.assoc.addingDone(); },
    [](FrontEnd& front) { front.assoc.Hue_initiateAdd(); },
    [](FrontEnd& front) { withText(front, &TembraAssociation::Nest_add); },
    &chooseCallback,
    [](FrontEnd& front) { front.assoc.sendCancelTo(smallEnum<cancel_type>(front.script)); },
    [](FrontEnd& front) { front.assoc.doResetFor(smallEnum<reset_type>(front.script)); },
    [](FrontEnd& front) { front.assoc.cmdToZigbee(smallEnum<zigbee_cmd>(front.script)); },
    [](FrontEnd& front) { front.assoc.cmdToZwave(smallEnum<zwave_cmd>(front.script)); },
    [](FrontEnd& front) { front.assoc.setDevType2(smallEnum<DevType>(front.script)); },
    [](FrontEnd& front) { front.assoc.setDevLocation(front.script.text().get()); },
    [](FrontEnd& front) { front.assoc.GenericIndexType(smallEnum<DevType>(front.script)); },
    [](FrontEnd& front) {
      const auto from = smallEnum<IndexType>(front.script);
      front.assoc.ChangeIndexType(from, smallEnum<IndexType>(front.script));
    },
    [](FrontEnd& front) { withText(front, &TembraAssociation::Hue_addBridge); },
    [](FrontEnd& front) { withTwoTexts(front, &TembraAssociation::Hue_addDev); },
    [](FrontEnd& front) { withTwoTexts(front, &TembraAssociation::Hue_refreshBridge); },
    [](FrontEnd& front) { withText(front, &TembraAssociation::Hue_remove); },
    &listBridges,
    [](FrontEnd& front) { front.assoc.Nest_checkExist(); },
    [](FrontEnd& front) { front.assoc.Nest_remove(); },
    [](FrontEnd& front) { front.assoc.ZW_checkNodeExists(); },
    [](FrontEnd& front) { front.assoc.ZW_createDeviceType(); },
    &lookForCommandClass,
    &deriveIndexes,
    [](FrontEnd& front) { front.assoc.ZW_removeNode(); },
    [](FrontEnd& front) { front.assoc.removeAllDevices(); },
    [](FrontEnd& front) { front.assoc.calculateDevId(); },
    [](FrontEnd& front) {
      require(front.assoc.GetDeviceTypeInStringFormat(front.script.word()) != nullptr, "every zone has a name");
    },
    [](FrontEnd& front) { front.assoc.validate_DeviceType(); },
    [](FrontEnd& front) { front.assoc.zb_createAnyDevice(); },
    [](FrontEnd& front) { front.assoc.zb_removeNode(front.script.word()); },
    &listSubTypes,
    &sendOwnDatagram,
    &misplaceEndpoint,
    // A second receive thread of a closed connection ends at once; an open one has its thread.
    [](FrontEnd& front) {
      if (front.assoc.running == 0) TembraAssociation::receiverHelper(&front.assoc);
    },
};

}  // namespace

void makeCall(FrontEnd& frontEnd) {
  if (frontEnd.script.atEnd()) return;
  kCalls[frontEnd.script.choose(std::size(kCalls))](frontEnd);
}

}  // namespace fuzz
