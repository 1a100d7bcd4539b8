// Callers on several threads.
#include <algorithm>
#include <chrono>
#include <iterator>
#include <string>
#include <thread>
#include <vector>

#include "background.h"
#include "kernel_stage.h"
#include "kit/text.h"

using kit::Device;
using kit::linesOf;
using kit::Node;

namespace {

using Callers = KernelStage;

bool isWhole(const std::string& line) {
  const char* const kBeginnings[] = {
      "log 0 ", "log 1 ", "log 2 ", "log 3 ", "send zigbee 320 ", "send zwave 236 op ", "send ha 4100 z"};
  return std::any_of(std::begin(kBeginnings), std::end(kBeginnings),
                     [&](const char* beginning) { return line.rfind(beginning, 0) == 0; });
}

constexpr char kNameLine[] = "log 0 libTembraAssoc:Name:";

// A name or location that the callers set, or a default one.
bool isWholeNameLine(const std::string& line) {
  const auto middle = line.find(" Location:");
  if (middle == std::string::npos) return false;
  const std::string name = line.substr(std::size(kNameLine) - 1, middle - (std::size(kNameLine) - 1));
  const std::string location = line.substr(middle + 10);
  const bool isDefault = name.size() > 4 && name.find(' ') == name.size() - 4 && name.substr(name.size() - 4) == " #17";
  return (name.empty() || isDefault || name == std::string(170, 'a')) &&
         (location.empty() || location == "Default" || location == std::string(170, 'b'));
}

}  // namespace

// Whatever interleaves: each datagram and each line is whole, and the database is never the worse for it.
TEST_F(Callers, OnTwoThreadsWhileDatagramsArrive) {
  router.database().nextId("17").put(Device(12, "Lamp").zwave(5));
  connect();
  {
    const Background adding([this](int turn) {
      std::string name(170, 'a');
      std::string location(170, 'b');
      assoc.addDevZigbeeZwave();
      assoc.setDevName(name.data());
      assoc.setDevLocation(location.data());
      if (turn % 4 == 0) assoc.sendCancelTo(cancel_both);
      assoc.calculateDevId();
    });
    const Background naming([this](int turn) {
      DevType types[50] = {};
      assoc.listSubDevType(DEVTYPE_GENERIC_DEVICE, types);
      assoc.setDevType(turn % 2 == 0 ? DEVTYPE_BINARY_SWITCH : DEVTYPE_MOTION_SENSOR);
      assoc.addingDone();
      if (turn % 3 == 0) assoc.removeDevZigbeeZwave();
      assoc.ZW_checkNodeExists();
    });
    for (int turn = 0; turn < 300; ++turn) {
      router.zwave().post(Node(static_cast<unsigned char>(turn % 7)).generic(0x10).specific(1).bytes());
      ZbDeviceInfo device{};
      device.msgCode = static_cast<unsigned char>(turn % 13);
      const auto* first = reinterpret_cast<const unsigned char*>(&device);
      router.zigbee().post({first, first + sizeof device});
      std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
  }
  router.close();
  std::size_t names = 0;
  for (const std::string& line : linesOf(trace())) {
    EXPECT_TRUE(isWhole(line)) << line;
    if (line.rfind(kNameLine, 0) != 0) continue;
    ++names;
    EXPECT_TRUE(isWholeNameLine(line)) << line;
  }
  EXPECT_GT(names, 10U);
  EXPECT_EQ(told("stray @"), 0U);
  EXPECT_GT(told("Received Packet from Z-wave"), 100U);
  EXPECT_EQ(router.database().records(), 2);
}
