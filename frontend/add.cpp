// Adding a device: button, identity, description, the user's choice, and the record in the device database.
#include <tembra/globals.h>

#include <algorithm>
#include <cerrno>

#include "names.h"
#include "operations.h"
#include "texts.h"

namespace tembra::frontend {
namespace {

using std::chrono::seconds;

// How long the library waits after each of these events.
constexpr seconds kForIdentity{60};
constexpr seconds kForDescription{180};
constexpr seconds kForChoice{180};

constexpr Milliseconds kBetweenAddLooks{50};
constexpr Milliseconds kFirstPause{1};
constexpr Milliseconds kLongestPause{50};

// What a device's record holds; a longer text would run into the next field.
constexpr std::size_t kZigbeeRoom = 31;
constexpr std::size_t kZwaveRoom = 179;

constexpr char kDefaultPlace[] = "Default";

DeviceReport reportOf(const LibraryEvent& heard) {
  DeviceReport report;
  std::memcpy(&report, heard.event.payload, sizeof report);
  return report;
}

std::string defaultName(const char* word, int id) { return std::string(word) + " #" + std::to_string(id); }

void addChoice(tembra_found& found, int type) {
  const int* end = found.choices + found.choice_count;
  if (std::find(static_cast<const int*>(found.choices), end, type) == end) found.choices[found.choice_count++] = type;
}

class Add {
 public:
  Add(Session& session, Known known) : session_(session), known_(known) {}

  [[noreturn]] void run() {
    session_.requireRadios();
    session_.requireServer(SERVER_HA);
    devices_ = session_.requireDatabase().devices;
    begin();
    awaitDevice();
    store(awaitChoice());
  }

  /// Where a device has left to be added again, and is not.
  void warnOfLeftDevice() const {
    if (leftId_ != 0) session_.warnOf(TEMBRA_REASON_LEFT, leftId_, keptName_);
  }

  /// The end with the name of the device, when it has none of its own.
  [[nodiscard]] End naming(End end) const {
    if (end.deviceName.empty()) end.deviceName = deviceName_;
    return end;
  }

  /// The end that the caller's cancel leads to: a device may have joined already.
  [[nodiscard]] End cancelled() const {
    const bool waits = phase_ <= TEMBRA_PHASE_BUTTON || phase_ == TEMBRA_PHASE_LEAVE_BUTTON;
    End end = session_.cancelled();
    if (!waits && !handedOver_) end.reason = TEMBRA_REASON_CANCELLED_JOINED;
    return naming(end);
  }

 private:
  void begin() {
    session_.open();
    session_.send([this] { session_.service().addDevZigbeeZwave(); });
    session_.settle();
    enterWait();
    session_.tell(TEMBRA_EVENT_WAITING);
  }

  void enterWait() {
    phase_ = TEMBRA_PHASE_BUTTON;
    session_.enterWait(phase_);
    overdue_ = Clock::now() + Milliseconds(tembra_wait_left()) + kGrace;
  }

  void enter(tembra_phase phase, seconds limit) {
    phase_ = phase;
    session_.enter(phase, limit);
    overdue_ = Clock::now() + limit + kGrace;
  }

  void awaitDevice();
  void hear(const LibraryEvent& heard);
  void removeKnown(const LibraryEvent& heard);
  void throwIfGivenUp();
  void find(const LibraryEvent& heard);
  void recogniseZigbee(unsigned address);
  [[nodiscard]] End endOf(const LibraryEvent& heard) const;
  [[nodiscard]] Choice awaitChoice();
  [[noreturn]] void store(const Choice& choice);
  void restoreDevice();
  void confirmType(int type);
  [[noreturn]] void awaitRecord(int id, const std::string& place);

  Session& session_;
  Known known_;
  std::vector<tembra_device> devices_;  ///< of the database when the operation began
  std::string keptName_;                ///< of a device that is known
  int leftId_ = 0;                      ///< its id when it has left
  std::string deviceName_;
  tembra_phase phase_ = TEMBRA_PHASE_OPENING;
  Clock::time_point overdue_;
  int radio_ = 0;
  bool handedOver_ = false;
  tembra_found found_ = sized<tembra_found>();
  ZbDeviceInfo zigbeeDevice_{};
};

void Add::awaitDevice() {
  while (phase_ != TEMBRA_PHASE_CHOICE) {
    if (const auto heard = session_.nextEvent(Clock::now() + kBetweenAddLooks)) {
      hear(*heard);
    } else {
      throwIfGivenUp();
    }
  }
}

void Add::hear(const LibraryEvent& heard) {
  switch (heard.event.code) {
    case EVENT_ADDING:
      radio_ = heard.event.source;
      session_.setRadio(radio_);
      enter(TEMBRA_PHASE_IDENTITY, kForIdentity);
      return session_.tell(TEMBRA_EVENT_ANSWERED);
    case EVENT_GETTING_INFO:
      if (radio_ == SERVER_ZWAVE) deviceName_ = "Z-Wave node " + std::to_string(heard.node);
      enter(TEMBRA_PHASE_DESCRIPTION, kForDescription);
      return session_.tell(TEMBRA_EVENT_READING);
    case EVENT_SELECT_TYPE:
    case EVENT_CREATED:
      return find(heard);
    case EVENT_ALREADY_ADDED:
      return removeKnown(heard);
    case EVENT_ADD_FAILED:
    case EVENT_TIMEOUT:
      throw endOf(heard);
    default:
      break;  // a late answer to an operation before
  }
}

// The device's button is pressed twice more, once to let it leave and once to let it join. A device that is known then
// is another one.
void Add::removeKnown(const LibraryEvent& heard) {
  if (known_ == Known::kRefused) throw endOf(heard);
  known_ = Known::kRefused;
  phase_ = TEMBRA_PHASE_LEAVE_BUTTON;
  const int id = heard.removedId;
  keptName_ = libraryText(heard.removedName);
  session_.warnOf(TEMBRA_REASON_ALREADY_KNOWN, id, keptName_);
  std::optional<tembra_device_event> left;
  try {
    left = letLeave(session_, phase_, {id, keptName_});
  } catch (const End& end) {
    if (end.deviceId == id) leftId_ = id;
    throw;
  }
  if (!left) throw failed(TEMBRA_REASON_OTHER_LEFT);
  if (left->id != id) throw otherLeft(*left);
  leftId_ = id;
  session_.setRadio(0);
  begin();
}

End Add::endOf(const LibraryEvent& heard) const {
  if (heard.event.code == EVENT_ALREADY_ADDED) {
    End end = failed(TEMBRA_REASON_ALREADY_KNOWN);
    end.deviceId = heard.removedId;
    end.deviceName = libraryText(heard.removedName);
    return end;
  }
  if (heard.event.code == EVENT_ADD_FAILED) {
    const bool described = heard.event.source == SERVER_ZWAVE && heard.state == ZW_ASSOC_QUERY;
    return failed(described ? TEMBRA_REASON_UNKNOWN_KIND : TEMBRA_REASON_RADIO_FAILED, heard.event.source);
  }
  if (phase_ == TEMBRA_PHASE_CHOICE) return timedOut(TEMBRA_REASON_CHOICE_TOO_SLOW);
  return timedOut(phase_ == TEMBRA_PHASE_BUTTON ? TEMBRA_REASON_NOBODY_PRESSED : TEMBRA_REASON_DEVICE_SILENT, radio_);
}

// The library reports neither a ZigBee device that fits no kind nor a ZigBee add that the radio abandons. Its state
// shows both; without this the user would wait for three minutes.
void Add::throwIfGivenUp() {
  if (Clock::now() >= overdue_) throw failed(TEMBRA_REASON_DATABASE_UNREADABLE, 0, EWOULDBLOCK);
  if (!session_.isSettled()) return;
  const int state = __atomic_load_n(&session_.service().assocState, __ATOMIC_RELAXED);
  if (session_.hasEvents()) return;
  if (state == ZB_ADDED) throw failed(TEMBRA_REASON_UNKNOWN_KIND, SERVER_ZIGBEE);
  if (state == ASSOC_IDLE) throw failed(TEMBRA_REASON_RADIO_FAILED, SERVER_ZIGBEE);
}

// The ZigBee server adds a device that joined before without a word, and the HA server replaces its record.
void Add::recogniseZigbee(unsigned address) {
  for (const tembra_device& device : devices_) {
    if (device.radio != TEMBRA_RADIO_ZIGBEE || device.address != address) continue;
    keptName_ = libraryText(device.name);
    session_.warnOf(TEMBRA_REASON_ALREADY_KNOWN, device.id, keptName_);
    return;
  }
}

// A Z-Wave node's type is what classification proposes: what the event reports may be that of an earlier device. A
// ZigBee device has its type and its name already.
void Add::find(const LibraryEvent& heard) {
  const DeviceReport report = reportOf(heard);
  radio_ = heard.event.source;
  session_.setRadio(radio_);
  const bool isZwave = radio_ == SERVER_ZWAVE;
  if (!isZwave) recogniseZigbee(heard.zigbeeDevice.shortAddress);
  found_.type = isZwave ? heard.classifiedType : report.type;
  addChoice(found_, found_.type);
  if (heard.event.code == EVENT_SELECT_TYPE) {
    for (const DevType type : report.subTypes) {
      if (type == DEVTYPE_UNKNOWN) break;
      addChoice(found_, type);
    }
  }
  found_.name_room = found_.place_room = isZwave ? kZwaveRoom : kZigbeeRoom;
  putText(found_.name,
          isZwave ? defaultName(typeName(found_.type).c_str(), heard.deviceId) : libraryText(heard.deviceName));
  const bool fits = keptName_.size() <= found_.name_room && isPlainText(keptName_);
  if (!fits) keptName_.clear();
  if (!keptName_.empty()) putText(found_.name, keptName_);
  deviceName_ = found_.name;
  putText(found_.place, kDefaultPlace);
  zigbeeDevice_ = heard.zigbeeDevice;
  phase_ = TEMBRA_PHASE_CHOICE;
  overdue_ = Clock::now() + kForChoice + kGrace;
  session_.offer(found_, heard.deviceId, kForChoice);
  session_.tell(TEMBRA_EVENT_FOUND, found_);
}

Choice Add::awaitChoice() {
  while (true) {
    if (const auto choice = session_.takeChoice()) return *choice;
    const auto heard = session_.nextEvent(Clock::now() + kBetweenAddLooks);
    if (heard && heard->event.code == EVENT_TIMEOUT) throw endOf(*heard);
    if (Clock::now() >= overdue_) throw timedOut(TEMBRA_REASON_CHOICE_TOO_SLOW);
  }
}

void Add::confirmType(int type) {
  TembraAssociation& service = session_.service();
  session_.call([&service, type] {
    service.setDevType(static_cast<DevType>(type));
    return true;
  });
}

// Whatever the ZigBee server said meanwhile, a description twice, say, stands in the record of the device. What it says
// in the microseconds until addingDone would stand there, too, as for every front end.
void Add::restoreDevice() {
  if (radio_ == SERVER_ZIGBEE) session_.service().zbDevice = zigbeeDevice_;
}

// A ZigBee device that keeps its type keeps the name of its classification, too: setDevType would replace it.
void Add::store(const Choice& choice) {
  phase_ = TEMBRA_PHASE_STORING;
  session_.settle();
  restoreDevice();
  if (radio_ == SERVER_ZWAVE || choice.type != found_.type) confirmType(choice.type);
  TembraAssociation& service = session_.service();
  const int id = DevId;
  if (id < 0) throw failed(TEMBRA_REASON_DATABASE_UNREADABLE);
  const std::string wanted = choice.name.empty() ? keptName_ : choice.name;
  const bool keepsName = wanted.empty() || (keptName_.empty() && wanted == found_.name);
  std::string name =
      keepsName ? std::string(service.devName, strnlen(service.devName, sizeof service.devName)) : wanted;
  std::string place = choice.place.empty() ? kDefaultPlace : choice.place;
  service.setDevName(name.data());
  service.setDevLocation(place.data());
  session_.send([&service] { service.addingDone(); });
  handedOver_ = true;
  deviceName_ = cleaned(name);
  session_.setBeyondRecall(true);
  awaitRecord(id, place);
}

// The HA server does not answer. Its record in the database does.
void Add::awaitRecord(int id, const std::string& place) {
  session_.enter(phase_, kForStoring, {id, deviceName_});
  const auto until = Clock::now() + kForStoring;
  Milliseconds pause = kFirstPause;
  while (Clock::now() < until) {
    const DeviceList list = session_.call([] { return readDevices(); });
    if (list.error != 0 && list.error != EBADMSG) throw failed(TEMBRA_REASON_DATABASE_UNREADABLE, 0, list.error);
    for (const tembra_device& device : list.devices) {
      if (device.id != id) continue;
      auto added = sized<tembra_device_event>();
      added.id = id;
      added.type = device.type;
      putText(added.name, libraryText(device.name));
      putText(added.place, place);
      session_.tell(TEMBRA_EVENT_ADDED, added);
      throw done();
    }
    session_.pause(Clock::now() + pause);
    pause = std::min(2 * pause, kLongestPause);
  }
  throw failed(TEMBRA_REASON_NOT_STORED, SERVER_HA);
}

}  // namespace

void addDevice(Session& session, Known known) {
  Add add(session, known);
  try {
    add.run();
  } catch (const Cancelled&) {
    add.warnOfLeftDevice();
    throw add.cancelled();
  } catch (const End& end) {
    if (end.outcome == TEMBRA_DONE) throw;
    add.warnOfLeftDevice();
    throw add.naming(end);
  }
}

}  // namespace tembra::frontend
