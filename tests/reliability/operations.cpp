#include "operations.h"

#include <arpa/inet.h>

#include <cstdlib>
#include <fstream>
#include <set>

namespace {

void (*registeredCallback)(AssocEvent*) = nullptr;

char someText[] = "text";
char someMac[] = "02:a1:b2:01:02:03";
char someHost[] = "127.0.0.1:1";
char someProtocol[] = "udp";

void resolve(TembraAssociation& /*assoc*/) {
  sockaddr_in address{};
  int length = sizeof address;
  mkaddr(&address, &length, someHost, someProtocol);
}

void sendNothing(TembraAssociation& assoc) {
  ZwaveCommand command{};
  assoc.sendToServers(SERVER_ZWAVE, &command);
}

void findType(TembraAssociation& assoc) {
  in_addr address{};
  inet_pton(AF_INET, "127.255.255.254", &address);
  assoc.findClientType(address);
}

void listTypes(TembraAssociation& assoc) {
  DevType types[50] = {};
  assoc.listSubDevType(DEVTYPE_GENERIC_DEVICE, types);
}

void indexValues(TembraAssociation& assoc) {
  unsigned char triples[6] = {0x25, 0, 1};
  assoc.ZW_indexToEnum(triples);
}

void findCommand(TembraAssociation& assoc) {
  unsigned char list[54] = {0x25, 0xFF};
  assoc.CommandExists(list, 0x25);
}

void nameDefault(TembraAssociation& /*assoc*/) {
  char name[200];
  getDefaultDevName(DEVTYPE_BINARY_SWITCH, 3, name);
}

void readMeshId(TembraAssociation& /*assoc*/) {
  char text[10];
  GetMeshId(text);
}

void turnMac(TembraAssociation& /*assoc*/) {
  char out[20];
  RevertHueMac(someMac, out);
}

void turnBridgeId(TembraAssociation& /*assoc*/) {
  char bridge[] = "02a1b2fffe010203";
  char out[20];
  HueMac(bridge, out);
}

using A = TembraAssociation&;

const std::vector<Operation> kOperations = {
    {"ControllerCommandenumToString(ozw_ControllerCommand)",
     [](A) { ControllerCommandenumToString(ozw_ControllerCommand_AddDevice); }},
    {"GetMeshId()", [](A) { GetMeshId(); }},
    {"GetMeshId(char*)", readMeshId},
    {"HueMac(char*, char*)", turnBridgeId},
    {"NotificationenumToString(ozw_NotificationType)",
     [](A) { NotificationenumToString(static_cast<ozw_NotificationType>(1)); }},
    {"OperationCodeenumToString(ozw_OperationCode)",
     [](A) { OperationCodeenumToString(ozw_Code_CancelCommandOperation); }},
    {"RevertHueMac(char*, char*)", turnMac},
    {"TembraAssociation::ChangeIndexType(IndexType, IndexType)",
     [](A assoc) { assoc.ChangeIndexType(INDEX_BASIC, INDEX_SMOKE); }},
    {"TembraAssociation::CommandExists(unsigned char*, unsigned char)", findCommand},
    {"TembraAssociation::ConnectToServers()", [](A assoc) { assoc.ConnectToServers(); }},
    {"TembraAssociation::FreeUsr1AssocInit()", [](A) { TembraAssociation::FreeUsr1AssocInit(); }},
    {"TembraAssociation::FreeUsr2AssocInit()", [](A) { TembraAssociation::FreeUsr2AssocInit(); }},
    {"TembraAssociation::GenericIndexType(DevType)", [](A assoc) { assoc.GenericIndexType(DEVTYPE_MOTOR_CONTROL); }},
    {"TembraAssociation::GetDeviceTypeInStringFormat(unsigned short)",
     [](A assoc) { assoc.GetDeviceTypeInStringFormat(0x0015); }},
    {"TembraAssociation::Hue_addBridge(char*)", [](A assoc) { assoc.Hue_addBridge(someMac); }},
    {"TembraAssociation::Hue_addDev(char*, char*)", [](A assoc) { assoc.Hue_addDev(someMac, someText); }},
    {"TembraAssociation::Hue_getBridgeList()", [](A assoc) { std::free(assoc.Hue_getBridgeList()); }},
    {"TembraAssociation::Hue_initiateAdd()", [](A assoc) { assoc.Hue_initiateAdd(); }},
    {"TembraAssociation::Hue_refreshBridge(char*, char*)", [](A assoc) { assoc.Hue_refreshBridge(someMac, someText); }},
    {"TembraAssociation::Hue_remove(char*)", [](A assoc) { assoc.Hue_remove(someMac); }},
    {"TembraAssociation::Nest_add(char*)", [](A assoc) { assoc.Nest_add(someText); }},
    {"TembraAssociation::Nest_checkExist()", [](A assoc) { assoc.Nest_checkExist(); }},
    {"TembraAssociation::Nest_remove()", [](A assoc) { assoc.Nest_remove(); }},
    {"TembraAssociation::ZW_checkNodeExists()", [](A assoc) { assoc.ZW_checkNodeExists(); }},
    {"TembraAssociation::ZW_createDeviceType()", [](A assoc) { assoc.ZW_createDeviceType(); }},
    {"TembraAssociation::ZW_indexToEnum(unsigned char*)", indexValues},
    {"TembraAssociation::ZW_removeNode()", [](A assoc) { assoc.ZW_removeNode(); }},
    {"TembraAssociation::addDevZigbeeZwave()", [](A assoc) { assoc.addDevZigbeeZwave(); }},
    {"TembraAssociation::addingDone()", [](A assoc) { assoc.addingDone(); }},
    {"TembraAssociation::calculateDevId()", [](A assoc) { assoc.calculateDevId(); }},
    {"TembraAssociation::checkAssocConnection()", [](A assoc) { assoc.checkAssocConnection(); }},
    {"TembraAssociation::closeAssocConnection()", [](A assoc) { assoc.closeAssocConnection(); }},
    {"TembraAssociation::cmdToZigbee(zigbee_cmd)", [](A assoc) { assoc.cmdToZigbee(zigbee_cmd_cancel); }},
    {"TembraAssociation::cmdToZwave(zwave_cmd)", [](A assoc) { assoc.cmdToZwave(zwave_cmd_cancel); }},
    {"TembraAssociation::doResetFor(reset_type)", [](A assoc) { assoc.doResetFor(reset_both_and_remove_all); }},
    {"TembraAssociation::findClientType(in_addr)", findType},
    {"TembraAssociation::getInstance()", [](A) { TembraAssociation::getInstance(); }},
    {"TembraAssociation::cloudappsAssocInit()", [](A) { TembraAssociation::cloudappsAssocInit(); }},
    {"TembraAssociation::listSubDevType(DevType, DevType*)", listTypes},
    {"TembraAssociation::meshServerAssocInit()", [](A) { TembraAssociation::meshServerAssocInit(); }},
    {"TembraAssociation::registerAssocEventCB(void (*)(AssocEvent*))",
     [](A assoc) { assoc.registerAssocEventCB(registeredCallback); }},
    {"TembraAssociation::removeAllDevices()", [](A assoc) { assoc.removeAllDevices(); }},
    {"TembraAssociation::removeDevZigbeeZwave()", [](A assoc) { assoc.removeDevZigbeeZwave(); }},
    {"TembraAssociation::sendCancelTo(cancel_type)", [](A assoc) { assoc.sendCancelTo(cancel_both); }},
    {"TembraAssociation::sendToServers(ServerType, void*)", sendNothing},
    {"TembraAssociation::setDevLocation(char*)", [](A assoc) { assoc.setDevLocation(someText); }},
    {"TembraAssociation::setDevName(char*)", [](A assoc) { assoc.setDevName(someText); }},
    {"TembraAssociation::setDevType(DevType)", [](A assoc) { assoc.setDevType(DEVTYPE_BINARY_SWITCH); }},
    {"TembraAssociation::setDevType2(DevType)", [](A assoc) { assoc.setDevType2(DEVTYPE_BINARY_SWITCH); }},
    {"TembraAssociation::validate_DeviceType()", [](A assoc) { assoc.validate_DeviceType(); }},
    {"TembraAssociation::webServerAssocInit()", [](A) { TembraAssociation::webServerAssocInit(); }},
    {"TembraAssociation::LCDAssocInit()", [](A) { TembraAssociation::LCDAssocInit(); }},
    {"TembraAssociation::zb_createAnyDevice()", [](A assoc) { assoc.zb_createAnyDevice(); }},
    {"TembraAssociation::zb_removeNode(unsigned short)", [](A assoc) { assoc.zb_removeNode(0x1234); }},
    {"cclassNum(char const*)", [](A) { cclassNum("COMMAND_CLASS_BASIC"); }},
    {"cclassStr(unsigned char)", [](A) { cclassStr(0x25); }},
    {"controllerErrorStr(ozw_ControllerError)", [](A) { controllerErrorStr(static_cast<ozw_ControllerError>(1)); }},
    {"controllerStateStr(ozw_ControllerState)", [](A) { controllerStateStr(static_cast<ozw_ControllerState>(1)); }},
    {"enumValueGenreStr(ozw_ValueGenre)", [](A) { enumValueGenreStr(static_cast<ozw_ValueGenre>(1)); }},
    {"getDefaultDevName(DevType, int, char*)", nameDefault},
    {"mkaddr(void*, int*, char*, char*)", resolve},
    {"valueTypeStr(ozw_ValueType)", [](A) { valueTypeStr(static_cast<ozw_ValueType>(1)); }},
};

// Creation and destruction, the receive thread's entry, and printing to standard output.
const std::set<std::string> kNoOperations = {
    "TembraAssociation::TembraAssociation()",   "TembraAssociation::TembraAssociation(TembraAssociation const&)",
    "TembraAssociation::~TembraAssociation()",  "TembraAssociation::receiver(void*)",
    "TembraAssociation::receiverHelper(void*)", "printAddrInfo(sockaddr_in)",
};

}  // namespace

bool Operation::disturbsOpening() const {
  const std::string full(name);
  return full.find("AssocConnection") != std::string::npos || full.rfind("GetMeshId", 0) == 0;
}

const std::vector<Operation>& operations() { return kOperations; }

void setOperationsCallback(void (*callback)(AssocEvent*)) { registeredCallback = callback; }

std::vector<std::string> exportedOperations() {
  std::vector<std::string> names;
  std::ifstream list(TEMBRA_EXPORTED_SYMBOLS);
  for (std::string line; std::getline(list, line);) {
    if (line.find('(') != std::string::npos && !kNoOperations.contains(line)) names.push_back(line);
  }
  return names;
}
