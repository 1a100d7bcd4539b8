#include "fault_scenarios.h"

#include <gtest/gtest.h>
#include <netinet/in.h>
#include <tembra/hue.h>
#include <tembra/service.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <new>
#include <ostream>

using kit::Call;
using kit::Device;
using kit::Node;
using kit::Router;
using kit::ZigbeeDevice;

namespace {

constexpr unsigned char kJoining = 77, kKnown = 5;
constexpr unsigned short kAddress = 0x1234;

std::string word(const char* name, long value) { return std::string(name).append(" ").append(std::to_string(value)); }

std::string words(std::initializer_list<std::string> each) {
  std::string all;
  for (const std::string& one : each) all.append(all.empty() ? "" : " ").append(one);
  return all;
}

std::string openAndClose(Router& router) {
  const int opened = router.open();
  const int mesh = local_meshID;
  router.close();
  return words({word("open", opened), word("mesh", mesh)});
}

// The descriptor that says "closed" is free.
std::string openWithoutStandardInput(Router& router) {
  constexpr int kElsewhere = 100;
  dup2(STDIN_FILENO, kElsewhere);
  close(STDIN_FILENO);
  std::string outcome = openAndClose(router);
  dup2(kElsewhere, STDIN_FILENO);
  close(kElsewhere);
  return outcome;
}

std::string sendInVain(Router& router) {
  router.fail(Call::kSendto, EPERM);
  ZwaveCommand command{};
  return word("send", router.assoc().sendToServers(SERVER_ZWAVE, &command));
}

std::string loseTheDescriptor(Router& router) {
  router.fail(Call::kRecvfrom, EBADF);
  router.zwave().send(Node(0));
  return word("idle", idle);
}

std::string create(Router& router) {
  delete TembraAssociation::singleton;
  TembraAssociation::singleton = nullptr;
  try {
    TembraAssociation::LCDAssocInit();
  } catch (const std::bad_alloc&) {
    return TembraAssociation::singleton == nullptr ? "bad_alloc and no object" : "bad_alloc and an object";
  }
  const bool complains = router.takeTrace().find("Bad ") != std::string::npos;
  return complains ? "an endpoint is bad" : "created";
}

std::string resolveNames(Router& /*router*/) {
  std::string text = "router.home:service\n";  // nothing behind the line counts, but it makes the text a long one
  text.append(64, 'x');
  char protocol[] = "udp";
  sockaddr_in address{};
  int length = sizeof address;
  return words(
      {word("mkaddr", mkaddr(&address, &length, text.data(), protocol)), word("print", printAddrInfo(address) > 0)});
}

std::string addZwave(Router& router) {
  TembraAssociation& assoc = router.assoc();
  char name[] = "Lamp";
  char location[] = "Hall";
  assoc.addDevZigbeeZwave();
  for (int answer = 0; answer < 3; ++answer) router.zwave().send(Node(kJoining).generic(0x10).specific(1));
  assoc.setDevType(DEVTYPE_BINARY_SWITCH);
  assoc.setDevName(name);
  assoc.setDevLocation(location);
  return words({word("done", assoc.addingDone()), word("id", DevId)});
}

std::string removeZwave(Router& router) {
  router.assoc().removeDevZigbeeZwave();
  router.zwave().send(Node(kKnown));
  router.zwave().send(Node(kKnown));
  return word("removed", router.assoc().removedId);
}

std::string addZigbee(Router& router) {
  router.assoc().addDevZigbeeZwave();
  router.zigbee().send(ZigbeeDevice(kAddress).status(1));
  router.zigbee().send(ZigbeeDevice(kAddress).status(6));
  router.zigbee().send(ZigbeeDevice(kAddress).status(10).cluster(0x0006));
  return words({word("done", router.assoc().addingDone()), word("id", DevId)});
}

std::string removeZigbee(Router& router) {
  router.assoc().removeDevZigbeeZwave();
  router.zigbee().send(ZigbeeDevice(kAddress).status(2));
  return word("removed", router.assoc().removedId);
}

std::string addHue(Router& router) {
  char mac[] = "02:a1:b2:01:02:03";
  router.assoc().Hue_initiateAdd();
  HueAnswer bridges{};
  bridges.count = 1;
  std::strcpy(bridges.entries[0].json, R"({"id":"02a1b2fffe010203","internalipaddress":"10.0.0.2"})");
  router.hue().send(bridges);
  std::string listed = "none";
  for (const auto& heard : router.takeEvents()) {
    HueBridgeList list{};
    std::memcpy(&list, heard.event.payload, sizeof list);
    if (heard.event.code == EVENT_HUE_BRIDGES) listed = list.address[0][0] == '\0' ? "empty" : list.address[0];
  }
  router.assoc().Hue_addBridge(mac);
  HueAnswer added{};
  added.type = 2;
  router.hue().send(added);
  return words({"bridge", listed});
}

std::string listBridges(Router& router) {
  char* const list = router.assoc().Hue_getBridgeList();
  const std::string text = list == nullptr ? "null" : list;
  std::free(list);
  return words({"bridges", text});
}

std::string linkNest(Router& router) {
  char account[] = "account";
  const int exists = router.assoc().Nest_checkExist();
  router.assoc().Nest_add(account);
  router.nest().send(NestAnswer{100, 0, 0});
  return word("linked", exists);
}

std::string resetBoth(Router& router) {
  router.assoc().doResetFor(reset_both_and_remove_all);
  return word("sends", static_cast<long>(router.takeSends().size()));
}

std::string waitInVain(Router& router) {
  router.assoc().addDevZigbeeZwave();
  router.advance(180);
  router.advance(180);
  return word("idle", idle);
}

std::string readDevices(Router& /*router*/) {
  return word("devices", tembra_read_devices(nullptr, sizeof(tembra_device), 0));
}

std::string readId(Router& router) { return words({word("id", router.assoc().calculateDevId()), word("kept", DevId)}); }

std::string lookUpZigbee(Router& router) { return word("removed", router.assoc().zb_removeNode(kAddress)); }

// So many bytes that the check of the file asks the system for memory.
constexpr std::size_t kLargeHome = 400'000;

void putDatabase(Router& router, File file) {
  router.database().remove();
  if (file == File::kMissing) return;
  router.database().nextId("17").put(Device(12, "Lamp").zwave(kKnown)).put(Device(13, "Door").zigbee(kAddress));
  router.database().put(Device(14, "Hue").ip().type("HueLamp"));
  router.database().index(14, 1, "02a1b2fffe010203").index(14, 9, "ann");
  router.database().put("14.10", std::string(kLargeHome, '.'));
  if (file == File::kRepairable) router.database().makeRepairable();
  if (file == File::kHopeless) router.database().makeUnopenable();
}

std::string readIdStrictly(Router& router) {
  tembra_set_strict(1);
  std::string id = readId(router);
  tembra_set_strict(0);
  return id;
}

void forgetDevice(TembraAssociation& assoc) {
  assoc.assocState = ASSOC_IDLE;
  assoc.lastEventCode = assoc.cancelTarget = assoc.activeRadio = assoc.removedId = 0;
  assoc.zwNodeWork = ZwNodeInfo{};
  assoc.zbDevice = ZbDeviceInfo{};
  std::memset(username1, 0, sizeof username1);
  BasicFlag = MultilevelFlag = SensorBinaryFlag = ZwAcExtFlag = 0;
  idle = 1;
  DevId = 0;
}

}  // namespace

std::ostream& operator<<(std::ostream& stream, const Scenario& scenario) { return stream << scenario.name; }

const std::vector<Scenario>& faultScenarios() {
  static const std::vector<Scenario> all = {
      {"Creation", File::kHealthy, false, create, {}},
      {"Names", File::kHealthy, false, resolveNames, {}},
      {"OpenAndClose", File::kHealthy, false, openAndClose, {}},
      {"OpenWithoutStandardInput", File::kHealthy, false, openWithoutStandardInput, {}},
      {"FailedSend", File::kHealthy, true, sendInVain, Call::kSendto},
      {"LostDescriptor", File::kHealthy, true, loseTheDescriptor, Call::kRecvfrom},
      {"ZwaveAdd", File::kHealthy, true, addZwave, {}},
      {"ZwaveRemove", File::kHealthy, true, removeZwave, {}},
      {"ZigbeeAdd", File::kHealthy, true, addZigbee, {}},
      {"ZigbeeRemove", File::kHealthy, true, removeZigbee, {}},
      {"Hue", File::kHealthy, true, addHue, {}},
      {"Nest", File::kHealthy, true, linkNest, {}},
      {"Reset", File::kHealthy, true, resetBoth, {}},
      {"TimeOut", File::kHealthy, true, waitInVain, {}},
      {"BridgeList", File::kHealthy, false, listBridges, {}},
      {"DeviceList", File::kHealthy, false, readDevices, {}},
      {"DeviceId", File::kHealthy, false, readId, {}},
      {"DeviceIdInStrictMode", File::kHealthy, false, readIdStrictly, {}},
      {"DeviceIdOfAMissingFile", File::kMissing, false, readId, {}},
      {"DeviceIdOfADamagedFile", File::kRepairable, false, readId, {}},
      {"DeviceIdOfAHopelessFile", File::kHopeless, false, readId, {}},
      {"LookUpInADamagedFile", File::kRepairable, false, lookUpZigbee, {}},
      {"LookUpInAHopelessFile", File::kHopeless, false, lookUpZigbee, {}},
  };
  return all;
}

void prepare(Router& router, const Scenario& scenario) {
  std::ofstream("/tmp/Authcode") << "code";
  putDatabase(router, scenario.file);
  forgetDevice(router.assoc());
  EXPECT_EQ(scenario.connected ? router.open() : 0, 0);
  router.forget();
}

std::string outcomeOf(Router& router, const Scenario& scenario) {
  std::string outcome = scenario.run(router);
  router.settle();
  for (const auto& heard : router.takeEvents()) outcome.append(" ").append(std::to_string(heard.event.code));
  return outcome;
}

std::string addOneNode(Router& router) {
  putDatabase(router, File::kHealthy);
  forgetDevice(router.assoc());
  router.registerCallback();
  router.assoc().ConnectToServers();  // mends what a failed creation left
  router.forget();
  const int opened = router.open();
  const std::string added = addZwave(router);
  std::string outcome = words({word("open", opened), word("mesh", local_meshID), added});
  for (const auto& heard : router.takeEvents()) outcome.append(" ").append(std::to_string(heard.event.code));
  router.close();
  return outcome;
}
