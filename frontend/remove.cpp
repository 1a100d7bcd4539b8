// Removing a device: button, and the radio's confirmation, which may never come.
#include <algorithm>

#include "operations.h"
#include "texts.h"

namespace tembra::frontend {
namespace {

constexpr Milliseconds kBetweenRemoveLooks{20};
constexpr std::chrono::seconds kForConfirmation{20};

tembra_device_event deviceOf(const LibraryEvent& heard) {
  DeviceReport report;
  std::memcpy(&report, heard.event.payload, sizeof report);
  auto device = sized<tembra_device_event>();
  device.id = report.removedId;
  putText(device.name, libraryText(report.removedName));
  return device;
}

End naming(const tembra_device_event& device, End end) {
  end.deviceId = device.id;
  end.deviceName = device.name;
  return end;
}

// A Z-Wave device that the radio does not know leaves as node 0; another node tells that the radio failed.
void throwIfRadioFailed(const LibraryEvent& heard) {
  const bool failing = heard.event.source == SERVER_ZWAVE && heard.node == NODE_FAILED;
  if (failing) throw failed(TEMBRA_REASON_RADIO_FAILED, SERVER_ZWAVE);
}

std::unique_ptr<LibraryEvent> awaitDevice(Session& session) {
  const auto overdue = Clock::now() + Milliseconds(std::max(0LL, tembra_wait_left())) + kGrace;
  while (Clock::now() < overdue) {
    auto heard = session.nextEvent(overdue);
    if (!heard) break;
    if (heard->event.code == EVENT_TIMEOUT) throw timedOut(TEMBRA_REASON_NOBODY_PRESSED);
    if (heard->event.code == EVENT_REMOVED || heard->event.code == EVENT_REMOVED_UNKNOWN) return heard;
  }
  throw failed(TEMBRA_REASON_DATABASE_UNREADABLE, 0, EWOULDBLOCK);
}

// No event tells that a Z-Wave removal is over, only `idle`. When the confirmation does not come, the library's
// time-out ends the wait: the device has left all the same.
void awaitConfirmation(Session& session) {
  const auto overdue = Clock::now() + kForConfirmation + kGrace;
  session.settle();
  while (!Session::libraryIsIdle() && Clock::now() < overdue) {
    const auto heard = session.nextEvent(Clock::now() + kBetweenRemoveLooks);
    if (heard && heard->event.code == EVENT_TIMEOUT) return session.settle();
  }
}

// The device has left also for the user who cancels now. @return the end that came before the confirmation
std::optional<End> endBeforeConfirmation(Session& session) {
  try {
    awaitConfirmation(session);
  } catch (const Cancelled&) {
    return session.cancelled();
  } catch (const End& end) {
    return end;
  }
  return std::nullopt;
}

}  // namespace

std::optional<tembra_device_event> letLeave(Session& session, tembra_phase phase, const KnownDevice& wanted) {
  session.open();
  session.send([&session] { session.service().removeDevZigbeeZwave(); });
  session.settle();
  session.enterWait(phase, wanted);
  session.tell(TEMBRA_EVENT_WAITING);
  const auto heard = awaitDevice(session);
  session.setRadio(heard->event.source);
  session.setBeyondRecall(true);
  const bool known = heard->event.code == EVENT_REMOVED;
  const auto device = known ? deviceOf(*heard) : tembra_device_event{};
  session.enter(TEMBRA_PHASE_LEAVING, kForConfirmation, {device.id, device.name});
  if (known) session.tell(TEMBRA_EVENT_REMOVING, device);
  const auto cutShort = endBeforeConfirmation(session);
  if (known) session.tell(TEMBRA_EVENT_REMOVED, device);
  if (cutShort) throw known ? naming(device, *cutShort) : *cutShort;
  session.setBeyondRecall(false);
  if (!known) {
    throwIfRadioFailed(*heard);
    return std::nullopt;
  }
  return device;
}

End otherLeft(const tembra_device_event& device) { return naming(device, failed(TEMBRA_REASON_OTHER_LEFT)); }

void removeDevice(Session& session, Leaving wanted) {
  session.requireRadios();
  session.requireServer(SERVER_HA);
  session.requireDatabase();
  const auto left = letLeave(session, TEMBRA_PHASE_BUTTON);
  if (wanted == Leaving::kStranger) throw left ? otherLeft(*left) : done();
  throw left ? done() : failed(TEMBRA_REASON_NOT_IN_LIST);
}

}  // namespace tembra::frontend
