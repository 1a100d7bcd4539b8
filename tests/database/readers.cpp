#include "readers.h"

#include <cstdlib>
#include <string>

#include "house.h"

using kit::Router;

namespace house {
namespace {

constexpr int kDevicesInOrder = 50, kNextId = 77, kIdBefore = 5;
constexpr unsigned short kFirstAddress = 0x1000;

bool isLamp(int id) { return id % 5 == 3; }

int lampsIn(int devices) { return (devices + 2) / 5; }

int othersIn(int devices, bool /*restIsKept*/) { return devices - lampsIn(devices); }

template <typename Finds>
int countIds(Finds finds) {
  int found = 0;
  for (int id = 1; id <= kDevicesInOrder; ++id) found += finds(id) ? 1 : 0;
  return found;
}

int removeNode(Router& router, int node) {
  router.assoc().zwNodeRx.nodeId = static_cast<unsigned char>(node);
  return router.assoc().ZW_removeNode();
}

int removeAddress(Router& router, int id) {
  return router.assoc().zb_removeNode(static_cast<unsigned short>(kFirstAddress + id));
}

std::string bridgesOf(Router& router) {
  char* const list = router.assoc().Hue_getBridgeList();
  std::string text = list == nullptr ? "" : list;
  std::free(list);
  return text;
}

int countBridges(Router& router) {
  const std::string list = bridgesOf(router);
  int bridges = 0;
  for (std::size_t at = list.find("{\"mac\""); at != std::string::npos; at = list.find("{\"mac\"", at + 1)) ++bridges;
  return bridges;
}

}  // namespace

const Reader kReaders[5] = {
    {"known node", false, [](Router& router) { return findNode(router, 99); }, 0,
     [](Router& router) { return countIds([&](int id) { return findNode(router, id) == 1; }); }, othersIn},
    {"removal", false, [](Router& router) { return removeNode(router, 99); }, -1,
     [](Router& router) {
       router.takeSends();
       return countIds([&](int id) {
         removeNode(router, id);
         return router.takeSends().size() == 1;
       });
     },
     othersIn},
    {"ZigBee removal", false, [](Router& router) { return removeAddress(router, 99); }, -1,
     [](Router& router) { return countIds([&](int id) { return removeAddress(router, id) == 0; }); }, othersIn},
    {"next id", true, [](Router& router) { return router.assoc().calculateDevId(); }, -1,
     [](Router& router) {
       DevId = kIdBefore;
       return router.assoc().calculateDevId();
     },
     [](int /*devices*/, bool restIsKept) { return restIsKept ? kNextId : kIdBefore; }},
    {"bridge list", false, [](Router& router) { return bridgesOf(router).empty() ? 0 : 1; }, 0, countBridges,
     [](int devices, bool restIsKept) { return restIsKept ? lampsIn(devices) : 0; }},
};

void fillInOrder(kit::Database& database) {
  for (int id = 1; id <= kDevicesInOrder; ++id) {
    kit::Device device(id, "Device");
    if (isLamp(id)) {
      device.ip().type("HueLamp");
    } else {
      device.zwave(static_cast<unsigned>(id)).record().zigbeeAddress = kFirstAddress + static_cast<unsigned>(id);
    }
    database.put(device);
  }
  for (int id = 1; id <= kDevicesInOrder; ++id) {
    if (!isLamp(id)) continue;
    const std::string number = std::to_string(100 + id);
    database.index(id, 1, "a1b2c3fffe0a1" + number).index(id, 9, "user " + number);
  }
  database.nextId(std::to_string(kNextId));
}

}  // namespace house
