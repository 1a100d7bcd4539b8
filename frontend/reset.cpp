// Resetting radio networks, which the library sleeps through, and emptying the device list.
#include <algorithm>

#include "operations.h"
#include "texts.h"

namespace tembra::frontend {
namespace {

using std::chrono::seconds;

constexpr seconds kForADevice{5};  // until the HA server has dropped another one
constexpr Milliseconds kBetweenEmptyingLooks{50};

// The library waits 7 seconds for the radios, and 2 seconds between the two commands to the ZigBee server.
int stepsOf(int what) { return what == reset_zwave ? 7 : 9; }

void tellStep(Session& session, int number, int all) {
  auto step = sized<tembra_step>();
  step.done = number;
  step.all = all;
  session.tell(TEMBRA_EVENT_STEP, step);
}

std::vector<tembra_device> remaining(const std::vector<tembra_device>& before, const std::vector<tembra_device>& now) {
  std::vector<tembra_device> both;
  for (const tembra_device& device : before) {
    const auto isSame = [&device](const tembra_device& each) { return each.id == device.id; };
    if (std::any_of(now.begin(), now.end(), isSame)) both.push_back(device);
  }
  return both;
}

// A device that leaves the list, and not its radio network, would stay there unseen.
void requireRadiosOf(Session& session, const std::vector<tembra_device>& devices) {
  for (const tembra_device& device : devices) {
    if (device.radio == TEMBRA_RADIO_ZIGBEE) session.requireServer(SERVER_ZIGBEE);
    if (device.radio == TEMBRA_RADIO_ZWAVE) session.requireServer(SERVER_ZWAVE);
  }
}

void tellRemoved(Session& session, const tembra_device& device) {
  auto removed = sized<tembra_device_event>();
  removed.id = device.id;
  putText(removed.name, libraryText(device.name));
  session.tell(TEMBRA_EVENT_REMOVED, removed);
}

// The HA server does not answer. What leaves the database tells: a list that cannot be read tells nothing.
std::vector<tembra_device> awaitEmptyList(Session& session, std::vector<tembra_device> devices) {
  if (!devices.empty()) session.enter(TEMBRA_PHASE_EMPTYING, kForADevice);
  auto until = Clock::now() + kForADevice;
  while (!devices.empty() && Clock::now() < until) {
    const DeviceList list = session.listDevices();
    const auto left = list.error == 0 ? remaining(devices, list.devices) : devices;
    if (left.size() < devices.size()) until = Clock::now() + kForADevice;
    for (const tembra_device& gone : devices) {
      if (remaining({gone}, left).empty()) tellRemoved(session, gone);
    }
    devices = left;
    if (!devices.empty()) session.pause(Clock::now() + kBetweenEmptyingLooks);
  }
  return devices;
}

}  // namespace

void resetRadios(Session& session, int what) {
  if (what == reset_zigbee) session.requireServer(SERVER_ZIGBEE);
  if (what == reset_zwave) session.requireServer(SERVER_ZWAVE);
  if (what >= reset_both) session.requireRadios();
  if (what == reset_both_and_remove_all) session.requireServer(SERVER_HA);
  const bool empties = what == reset_both_and_remove_all;
  if (empties) session.requireDatabase();
  const DeviceList before = empties ? session.listDevices() : DeviceList{};
  requireRadiosOf(session, before.devices);
  session.open();
  const int all = stepsOf(what);
  session.enter(TEMBRA_PHASE_RESETTING, seconds(all));
  TembraAssociation& service = session.service();
  int told = 0;
  tellStep(session, told, all);
  const auto began = Clock::now();
  const auto reset = [&service, what] {
    service.doResetFor(static_cast<reset_type>(what));
    return true;
  };
  const auto tellProgress = [&] {
    const auto passed = std::chrono::duration_cast<seconds>(Clock::now() - began).count();
    const int now = std::min(static_cast<int>(passed), all - 1);
    if (now > told) tellStep(session, told = now, all);
  };
  session.setBeyondRecall(true);
  session.send([&] { session.call(reset, tellProgress); });
  tellStep(session, all, all);
  const std::vector<tembra_device> kept = awaitEmptyList(session, before.devices);
  for (const tembra_device& device : kept) {
    session.warnOf(TEMBRA_REASON_DEVICES_REMAIN, device.id, libraryText(device.name));
  }
  throw kept.empty() ? done() : failed(TEMBRA_REASON_DEVICES_REMAIN, SERVER_HA);
}

}  // namespace tembra::frontend
