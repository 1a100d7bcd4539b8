#include "campaign/verdict.h"

#include <tembra/records.h>
#include <tembra/vocabulary.h>

#include <algorithm>
#include <cstring>
#include <optional>
#include <span>

#include "campaign/command_text.h"
#include "campaign/story.h"
#include "kit/json_schema.h"

namespace campaign {
namespace {

using kit::JsonSchema;
using nlohmann::json;

constexpr Time kLatest = 100 * kMillisecond;  // behind the library's own end

template <typename Kind>
const Kind* lastOf(const KitStory& story) {
  const Kind* last = nullptr;
  for (const auto& each : story.events) {
    if (const auto* kind = each.event.template as<Kind>()) last = kind;
  }
  return last;
}

using Slots = std::vector<std::pair<int, int>>;

// A device that the HA server was told of, with its values.
struct Told {
  unsigned address;
  Slots slots;
};

template <typename Block>
Block blockIn(const Datagram& datagram) {
  Block block;
  std::memcpy(&block, datagram.bytes.data() + offsetof(HaNotice, record), sizeof block);
  return block;
}

Told toldOf(const ZwNodeInfo& node) {
  Told told{node.nodeId, {}};
  for (const ZwIndexEntry& entry : node.indexes) {
    if (entry.type == 0) break;
    told.slots.emplace_back(entry.type, entry.instance);
  }
  return told;
}

Told toldOf(const ZbDeviceInfo& device) {
  Told told{device.shortAddress, {}};
  const auto count = std::min<std::size_t>(device.indexCount, std::size(device.indexes));
  for (const ZbIndexEntry& entry : std::span(device.indexes).first(count)) {
    told.slots.emplace_back(entry.type, entry.endpoint);
  }
  return told;
}

std::optional<Told> addedBy(const Datagram& datagram) {
  const std::string text = commandText(datagram);
  if (!text.ends_with(" added")) return std::nullopt;
  return text.starts_with("ha zwave") ? toldOf(blockIn<ZwNodeInfo>(datagram)) : toldOf(blockIn<ZbDeviceInfo>(datagram));
}

class Verdict {
 public:
  Verdict(const Record& record, const KitStory& story)
      : record_(record), story_(story), ended_(lastOf<tembra::Ended>(story)), found_(story.mistakes) {}

  std::vector<std::string> give() {
    if (ended_ == nullptr) return disagree("the operation does not end"), found_;
    checkOrder();
    checkJson();
    checkMoment();
    checkOutcome();
    checkDevices();
    checkDatabase();
    if (!found_.empty()) tellAll();
    return found_;
  }

 private:
  void disagree(const std::string& sentence) { found_.push_back(sentence); }

  void expect(bool agrees, const std::string& sentence) {
    if (!agrees) disagree(sentence);
  }

  void checkOrder() {
    unsigned number = story_.events.front().event.number;
    for (const KitEvent& each : story_.events) {
      expect(each.event.number == number++, "the numbers have gaps");
      expect((each.event.as<tembra::Ended>() != nullptr) == (&each == &story_.events.back()), "there is one end");
    }
  }

  void checkJson() {
    static const JsonSchema events(TEMBRA_SCHEMAS "/tembra-event.schema.json");
    static const JsonSchema states(TEMBRA_SCHEMAS "/tembra-state.schema.json");
    for (const KitEvent& each : story_.events) {
      for (const auto& [schema, text] : {std::pair(&events, &each.event.json), std::pair(&states, &each.state)}) {
        const std::string fault = schema->faultOf(json::parse(*text));
        expect(fault.empty(), fault + ": " + *text);
      }
    }
  }

  // What ends an operation is a datagram, a time-out, the caller, or the moment that the kit itself named.
  [[nodiscard]] Time lastCause() const {
    const Time end = story_.events.back().at;
    std::vector<Time> causes = story_.did;
    for (const SeenEvent& each : story_.told) causes.push_back(each.at);
    for (const Datagram& each : record_.wire) causes.push_back(each.at);
    for (const KitEvent& each : story_.events) {
      if (each.event.endsIn) causes.push_back(each.at + each.event.endsIn->count() * kMillisecond);
    }
    std::erase_if(causes, [end](Time cause) { return cause > end; });
    return *std::ranges::max_element(causes);
  }

  void checkMoment() {
    const Time late = story_.events.back().at - lastCause();
    expect(late <= kLatest, "the end comes " + seconds(late) + " late");
  }

  void checkOutcome() {
    const auto outcome = ended_->outcome;
    const Goal goal = record_.step.goal;
    expect(!record_.step.mustSucceed || goal == Goal::kCancel || outcome == TEMBRA_DONE || isPardoned(),
           "this should have succeeded");
    expect(goal == Goal::kCancel || record_.interrupted || outcome != TEMBRA_CANCELLED, "nobody has cancelled");
    const bool isDone = outcome == TEMBRA_DONE;
    expect(isDone == (ended_->reason == TEMBRA_REASON_NONE), "only what is done has no reason");
    if (goal == Goal::kNestLink && isDone) expect(record_.linkedAfter, "the account is linked");
    if (goal == Goal::kNestUnlink && isDone) expect(!record_.linkedAfter, "the account is unlinked");
  }

  // The library closes a web server's connection behind every answer of the Hue and Nest servers, also a late one.
  [[nodiscard]] bool isPardoned() const {
    const bool isClosed = std::ranges::any_of(record_.wire, [](const Datagram& each) {
      return each.to == kLibraryAddress && (each.from == kHueAddress || each.from == kNestAddress);
    });
    return ended_->reason == TEMBRA_REASON_ALREADY_KNOWN ||
           (ended_->reason == TEMBRA_REASON_CONNECTION_LOST && isClosed);
  }

  [[nodiscard]] static const StoredDevice* findDevice(const Database& database, int id) {
    const auto device = std::ranges::find(database.devices, id, &StoredDevice::id);
    return device == database.devices.end() ? nullptr : &*device;
  }

  void checkDevices() {
    if (record_.step.goal == Goal::kAdd) checkAdded();
    if (record_.step.goal == Goal::kRemove) checkRemoved();
  }

  // Who cancels while the HA server stores the device may have it all the same.
  void checkAdded() {
    const bool isStored = std::ranges::count(record_.after.devices, record_.step.name, &StoredDevice::name) == 1;
    const auto* added = lastOf<tembra::Added>(story_);
    const bool isUndecided = ended_->reason == TEMBRA_REASON_CANCELLED_LATE && isStored;
    expect(isUndecided || isStored == (added != nullptr), "the device is stored when the kit says so");
    expect((added != nullptr) == (ended_->outcome == TEMBRA_DONE), "the add is done when the device is stored");
    if (added == nullptr) return;
    const StoredDevice* device = findDevice(record_.after, added->id);
    expect(device != nullptr && device->name == added->name && device->name == record_.step.name, "its name is stored");
    const auto* found = lastOf<tembra::Found>(story_);
    expect(device != nullptr && found != nullptr && tembra::typeName(found->type) == device->type,
           "its proposed type is stored");
  }

  void checkRemoved() {
    const auto* removed = lastOf<tembra::Removed>(story_);
    const bool leaves = lastOf<tembra::Removing>(story_) != nullptr;
    expect(leaves == (removed != nullptr), "what leaves has left at the end");
    if (removed == nullptr) return expect(ended_->outcome != TEMBRA_DONE, "something was removed");
    expect(findDevice(record_.before, removed->id) != nullptr, "the removed device was there");
    expect(findDevice(record_.after, removed->id) == nullptr, "the removed device is gone");
  }

  void checkDatabase() {
    for (const std::string& mistake : record_.after.mistakes) disagree("in the database " + mistake);
    for (const Datagram& datagram : record_.wire) {
      if (datagram.to == kHaAddress) checkNotice(datagram);
    }
    if (ended_->outcome == TEMBRA_DONE) checkLamps();
  }

  void checkNotice(const Datagram& datagram) {
    const std::vector<StoredDevice>& devices = record_.after.devices;
    if (commandText(datagram) == "ha remove all") return expect(devices.empty(), "every device is gone");
    const auto told = addedBy(datagram);
    if (!told || devices.empty()) return;
    expect(devices.back().address == told->address && devices.back().slots == told->slots,
           "the newest device " + devices.back().text() + " is not what the HA server was told");
  }

  void checkLamps() {
    std::vector<std::string> lamps;
    for (const StoredDevice& device : record_.after.devices) {
      if (device.radio == RADIO_IP) lamps.push_back(device.name);
    }
    const Goal goal = record_.step.goal;
    if (goal == Goal::kHueAdd) expect(!lamps.empty(), "the bridge came with a lamp");
    if (goal == Goal::kHueBulb) expect(std::ranges::count(lamps, record_.step.word) == 1, "the lamp is stored");
    if (goal == Goal::kHueRemove) expect(lamps.empty(), "the lamps are gone with their bridge");
  }

  void tellAll() {
    std::string all = "what the kit said";
    for (const KitEvent& each : story_.events) {
      all.append("\n  ").append(seconds(each.at - record_.began)).append("  ").append(each.event.json);
    }
    disagree(all);
  }

  const Record& record_;
  const KitStory& story_;
  const tembra::Ended* ended_;
  std::vector<std::string> found_;
};

}  // namespace

std::vector<std::string> disagreementsIn(const Record& record, const KitStory& story) {
  return Verdict(record, story).give();
}

}  // namespace campaign
