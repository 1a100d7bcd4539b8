#include "campaign/verdict.h"

#include <tembra/events.h>
#include <tembra/records.h>
#include <tembra/vocabulary.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "campaign/command_text.h"
#include "campaign/expectation.h"
#include "campaign/story.h"

namespace campaign {
namespace {

constexpr int kInterruptedStatus = 130;
constexpr Time kTick = 150 * kMillisecond;      // the front end looks around that often
constexpr Time kClosing = 2 * kSecond + kTick;  // and so long for the library to close a connection
constexpr int kZigbeeRadio = 1;

bool sameEvent(const ExpectedEvent& expected, const SeenEvent& seen) {
  return expected.code == seen.code && seen.at >= expected.at && seen.at <= expected.at + kTick;
}

template <typename Event>
std::string eventsText(const std::vector<Event>& events) {
  std::string text;
  for (const Event& event : events) {
    text.append("\n    ").append(seconds(event.at)).append("  event ").append(std::to_string(event.code));
  }
  return text;
}

std::string textOf(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text.append("\n    ").append(line);
  return text;
}

class Verdict {
 public:
  explicit Verdict(const Record& record) : record_(record), expected_(expectationOf(record)) {}

  std::vector<std::string> give() {
    checkStatus();
    checkEvents();
    checkSent();
    checkDevices();
    checkSlots();
    checkAccount();
    return found_;
  }

 private:
  void disagree(const std::string& sentence) { found_.push_back(sentence); }
  [[nodiscard]] Goal goal() const { return record_.step.goal; }
  [[nodiscard]] bool wasInterrupted() const { return record_.status == kInterruptedStatus; }
  [[nodiscard]] Time patience() const { return record_.step.role == "web" ? kClosing : kTick; }

  void checkStatus();
  void checkInterruption();
  void checkEvents();
  void checkSent();
  void checkDevices();
  void checkSlots();
  void checkAccount();

  [[nodiscard]] std::vector<std::string> expectedDevices() const;
  void changeLamps(std::vector<std::string>& devices) const;

  const Record& record_;
  const Expectation expected_;
  std::vector<std::string> found_;
};

// An interruption that comes while the front end is ending anyway may come too late.
void Verdict::checkInterruption() {
  if (!record_.interrupted) return disagree("the front end says that it was interrupted, and was not");
  const bool overBefore = goal() != Goal::kReset && expected_.end + patience() < *record_.interrupted;
  if (overBefore) disagree("the front end should have ended before it was interrupted");
}

void Verdict::checkStatus() {
  const bool must = record_.step.mustSucceed && record_.status != 0;
  const auto& events = record_.seen;
  const bool known = std::any_of(events.begin(), events.end(),
                                 [](const SeenEvent& event) { return event.code == EVENT_ALREADY_ADDED; });
  if (must && !known) disagree("this should have succeeded, whatever was before");
  if (wasInterrupted()) return checkInterruption();
  if (record_.interrupted && *record_.interrupted + kTick < record_.ended && goal() != Goal::kReset) {
    disagree("the front end goes on after it was interrupted");
  }
  if (record_.status != expected_.status) {
    disagree("exit status " + std::to_string(record_.status) + " instead of " + std::to_string(expected_.status));
  }
  if (record_.ended < expected_.end || record_.ended > expected_.end + patience()) {
    disagree("ended at " + seconds(record_.ended - record_.began) + " instead of " +
             (expected_.end - record_.began > 10'000 * kSecond ? "never" : seconds(expected_.end - record_.began)));
  }
}

void Verdict::checkEvents() {
  const std::vector<SeenEvent>& seen = record_.seen;
  const auto& expected = expected_.events;
  if (std::equal(expected.begin(), expected.end(), seen.begin(), seen.end(), sameEvent)) return;
  disagree("the front end saw these events:" + eventsText(seen) + "\n  instead of:" + eventsText(expected));
}

void Verdict::checkSent() {
  std::vector<std::string> expected;
  for (const Sent& sent : expected_.sent) expected.push_back(sent.text);
  const bool running = expected_.end > record_.ended;
  if (wasInterrupted() && running && (goal() == Goal::kAdd || goal() == Goal::kRemove)) {
    expected.insert(expected.end(), {"zigbee cancel", "zwave cancel"});
  }
  std::vector<std::string> sent;
  for (const Datagram& datagram : record_.wire) {
    if (datagram.from != kLibraryAddress) continue;
    const std::size_t number = sent.size();
    sent.push_back(commandText(datagram));
    const Time due = number < expected_.sent.size() ? expected_.sent[number].at : datagram.at;
    if (datagram.at < due || datagram.at > due + kTick) {
      disagree("\"" + sent.back() + "\" was sent at " + seconds(datagram.at - record_.began) + " instead of " +
               seconds(due - record_.began));
    }
  }
  if (sent != expected) disagree("the library sent:" + textOf(sent) + "\n  instead of:" + textOf(expected));
}

std::string deviceText(const std::string& radio, unsigned address, const std::string& name, const std::string& type) {
  return radio + " " + std::to_string(address) + " \"" + name + "\" " + type;
}

const char* radioText(Server radio) { return radio == Server::kZwave ? "Z-Wave" : "ZigBee"; }

// What the Hue server does it does at once, whatever becomes of its answer.
void Verdict::changeLamps(std::vector<std::string>& devices) const {
  if (record_.status == 3) return;
  const auto isLamp = [](const std::string& device) { return device.rfind("IP", 0) == 0; };
  const bool holds = std::any_of(devices.begin(), devices.end(), isLamp);
  const bool letIn = std::any_of(record_.asked.begin(), record_.asked.end(), [](const Asked& asked) {
    return asked.done && asked.answer.find("lets the router in") != std::string::npos;
  });
  if (goal() == Goal::kHueAdd && letIn && !holds) devices.push_back(deviceText("IP", 0, "Hue lamp", "HueLamp"));
  if (goal() == Goal::kHueBulb && holds) devices.push_back(deviceText("IP", 0, record_.step.word, "HueLamp"));
  if (goal() == Goal::kHueRemove) std::erase_if(devices, isLamp);
}

std::vector<std::string> Verdict::expectedDevices() const {
  std::vector<std::string> devices;
  const auto is = [](const StoredDevice& device, const std::optional<Party>& party) {
    return party && device.address == party->address &&
           device.radio == (party->radio == Server::kZwave ? static_cast<int>(RADIO_ZWAVE) : kZigbeeRadio);
  };
  const bool emptied = goal() == Goal::kReset && record_.step.word == "all" && record_.status != 3;
  for (const StoredDevice& device : record_.before.devices) {
    if (!emptied && !is(device, expected_.removed) && !is(device, expected_.added)) devices.push_back(device.text());
  }
  if (const auto& party = expected_.added) {
    devices.push_back(deviceText(radioText(party->radio), party->address, record_.step.name, party->type));
  }
  changeLamps(devices);
  return devices;
}

void Verdict::checkDevices() {
  for (const std::string& mistake : record_.after.mistakes) disagree("in the database " + mistake);
  const std::vector<std::string> expected = expectedDevices();
  std::vector<std::string> stored;
  for (const StoredDevice& device : record_.after.devices) stored.push_back(device.text());
  if (stored != expected) {
    disagree("the database holds:" + textOf(stored) + "\n  instead of:" + textOf(expected));
  }
}

template <typename Block>
Block blockIn(const Datagram& datagram) {
  Block block;
  std::memcpy(&block, datagram.bytes.data() + offsetof(HaNotice, record), sizeof block);
  return block;
}

// What the HA server was told of a device's values.
std::vector<std::pair<int, int>> slotsIn(const Datagram& datagram) {
  std::vector<std::pair<int, int>> slots;
  if (commandText(datagram).rfind("ha zwave", 0) == 0) {
    for (const ZwIndexEntry& entry : blockIn<ZwNodeInfo>(datagram).indexes) {
      if (entry.type == 0) break;
      slots.emplace_back(entry.type, entry.instance);
    }
    return slots;
  }
  const auto device = blockIn<ZbDeviceInfo>(datagram);
  for (int i = 0; i < std::min<int>(device.indexCount, static_cast<int>(std::size(device.indexes))); ++i) {
    slots.emplace_back(device.indexes[i].type, device.indexes[i].endpoint);
  }
  return slots;
}

void Verdict::checkSlots() {
  for (const Datagram& datagram : record_.wire) {
    const std::string told = datagram.to == kHaAddress ? commandText(datagram) : "";
    if (told.size() < 6 || told.substr(told.size() - 6) != " added" || record_.after.devices.empty()) continue;
    const StoredDevice& newest = record_.after.devices.back();
    if (newest.slots != slotsIn(datagram)) {
      disagree("the values of " + newest.text() + " are not those that the HA server was told");
    }
  }
}

void Verdict::checkAccount() {
  bool linked = record_.linkedBefore;
  if (record_.status != 3 && goal() == Goal::kNestLink) linked = true;
  if (record_.status != 3 && goal() == Goal::kNestUnlink) linked = false;
  if (record_.linkedAfter != linked) disagree(linked ? "the account should be linked" : "the account is linked still");
}

}  // namespace

std::vector<std::string> disagreementsIn(const Record& record) { return Verdict(record).give(); }

}  // namespace campaign
