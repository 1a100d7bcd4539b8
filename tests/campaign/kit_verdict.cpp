#include "campaign/kit_verdict.h"

#include <algorithm>
#include <memory>

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

class KitVerdict {
 public:
  KitVerdict(const Record& record, const KitStory& story)
      : record_(record), story_(story), ended_(lastOf<tembra::Ended>(story)), found_(story.mistakes) {}

  std::vector<std::string> give() {
    if (ended_ == nullptr) return disagree("the operation does not end"), found_;
    checkOrder();
    checkJson();
    checkMoment();
    checkOutcome();
    checkDevices();
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
    causes.insert(causes.end(), story_.told.begin(), story_.told.end());
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
    const bool isUndecided = ended_->reason == TEMBRA_REASON_CANCELLED && isStored;
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
    if (removed == nullptr) return expect(ended_->outcome != TEMBRA_DONE, "something was removed");
    expect(findDevice(record_.before, removed->id) != nullptr, "the removed device was there");
    expect(findDevice(record_.after, removed->id) == nullptr, "the removed device is gone");
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

std::vector<std::string> kitDisagreementsIn(const Record& record, const KitStory& story) {
  return KitVerdict(record, story).give();
}

Cast kitCast(const Plan& plan) {
  const auto tried = std::ranges::find(plan.steps, true, &Step::isTried);
  const bool keepsOpen = plan.seed / scenarios().size() % 2 == plan.seed % 2;
  const auto front = std::make_shared<KitFrontEnd>(tried->role, keepsOpen);
  const auto ending = [front] {
    const auto& last = front->story().events.back().event;
    const tembra::Ended& ended = *last.as<tembra::Ended>();
    return std::string(tembra_operation_name(last.operation)) + ": " + tembra_reason_name(ended.reason);
  };
  return {[front](const Step& step, const auto& onEvent) { return front->operate(step, onEvent); },
          [front](const Record& record) { return kitDisagreementsIn(record, front->story()); }, ending};
}

}  // namespace campaign
