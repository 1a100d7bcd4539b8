// The judge can find everything that it looks at: a story that agrees is altered, and then it does not.
#include <gtest/gtest.h>

#include <tembra/records.h>
#include <tembra/vocabulary.h>

#include <algorithm>
#include <cstring>

#include "campaign/verdict.h"

namespace campaign {
namespace {

constexpr Time kAt = 5 * kSecond;

tembra::Ended doneEnd() {
  return {TEMBRA_DONE, TEMBRA_REASON_NONE, TEMBRA_PHASE_ANSWER, {}, 0, {}, 0, "", "Done.", "", {}};
}

std::string jsonOf(unsigned number, const std::string& event) {
  return R"({"schema":1,"number":)" + std::to_string(number) +
         R"(,"operation":"nest-link","ms":0,"phase":"answer","radio":null,"ends_in_ms":null,)" + event + "}";
}

KitEvent eventAt(unsigned number, Time at, tembra::Event::Detail detail, const std::string& json) {
  const tembra::Event event = {TEMBRA_OPERATION_NEST_LINK, number, TEMBRA_PHASE_ANSWER, TEMBRA_RADIO_OTHER, {}, {},
                               std::move(detail),          {}};
  KitEvent all = {at, event, {}};
  all.event.json = jsonOf(number, json);
  all.state = R"({"schema":1,"operation":"none","phase":"none","radio":null,"last_event":1,"ms":0,"ends_in_ms":null})";
  return all;
}

constexpr char kWaitingJson[] = R"("event":"waiting")";
constexpr char kEndedJson[] =
    R"("event":"ended","outcome":"done","reason":"none","reason_number":0,"ended_in":"answer","waited_ms":0,"server":null,)"
    R"("error":0,"text":"Done.","advice":"")";

KitStory goodStory() {
  KitStory story;
  story.events = {eventAt(1, kAt, tembra::Waiting{}, kWaitingJson), eventAt(2, kAt, doneEnd(), kEndedJson)};
  story.did = {kAt};
  return story;
}

Record goodRecord() {
  Record record;
  record.step.goal = Goal::kNestLink;
  record.step.mustSucceed = true;
  record.linkedAfter = true;
  return record;
}

tembra::Ended& endOf(KitStory& story) { return std::get<tembra::Ended>(story.events.back().event.detail); }

void leaveALamp(Record& record) {
  record.step.goal = Goal::kHueRemove;
  record.after.devices.emplace_back().radio = RADIO_IP;
}

// And something else is stored afterwards.
void tellTheHaServer(Record& record, const HaNotice& notice) {
  const auto* first = reinterpret_cast<const unsigned char*>(&notice);
  record.wire.push_back({kAt, kLibraryAddress, kHaAddress, {first, first + sizeof notice}});
  record.after.devices.emplace_back();
}

HaNotice removeAll() {
  HaNotice notice{};
  std::memcpy(notice.record, "removeAllDevices", sizeof "removeAllDevices");
  return notice;
}

HaNotice nodeAdded() {
  HaNotice notice{};
  notice.recordKind = RECORD_ZWAVE;
  notice.record[offsetof(ZwNodeInfo, nodeId)] = 5;
  notice.record[offsetof(ZwNodeInfo, requestMark)] = MARK_ADDED;
  return notice;
}

struct AlteredStory {
  const char* found;
  void (*alter)(Record& record, KitStory& story);
};

constexpr AlteredStory kAltered[] = {
    {"the operation does not end", [](Record&, KitStory& story) { story.events.pop_back(); }},
    {"there is one end", [](Record&, KitStory& story) { std::swap(story.events[0], story.events[1]); }},
    {"the numbers have gaps", [](Record&, KitStory& story) { story.events.back().event.number = 3; }},
    {"the value", [](Record&, KitStory& story) { story.events[0].event.json = R"({"schema":1,"event":"waiting"})"; }},
    {"the value", [](Record&, KitStory& story) { story.events[0].state = "{}"; }},
    {"late", [](Record&, KitStory& story) { story.events.back().at += 101 * kMillisecond; }},
    {"this should have succeeded", [](Record&, KitStory& story) { endOf(story).outcome = TEMBRA_FAILED; }},
    {"nobody has cancelled", [](Record&, KitStory& story) { endOf(story).outcome = TEMBRA_CANCELLED; }},
    {"only what is done has no reason",
     [](Record&, KitStory& story) { endOf(story).reason = TEMBRA_REASON_NO_ANSWER; }},
    {"the account is linked", [](Record& record, KitStory&) { record.linkedAfter = false; }},
    {"the add is done when the device is stored", [](Record& record, KitStory&) { record.step.goal = Goal::kAdd; }},
    {"something was removed", [](Record& record, KitStory&) { record.step.goal = Goal::kRemove; }},
    {"what leaves has left at the end",
     [](Record& record, KitStory& story) {
       record.step.goal = Goal::kRemove;
       story.events[0].event.detail = tembra::Removing{};
     }},
    {"in the database", [](Record& record, KitStory&) { record.after.mistakes.emplace_back("something is odd"); }},
    {"the newest device", [](Record& record, KitStory&) { tellTheHaServer(record, nodeAdded()); }},
    {"a lamp", [](Record& record, KitStory&) { record.step.goal = Goal::kHueAdd; }},
    {"the lamp is stored", [](Record& record, KitStory&) { record.step.goal = Goal::kHueBulb; }},
    {"the lamps are gone", [](Record& record, KitStory&) { leaveALamp(record); }},
    {"every device is gone", [](Record& record, KitStory&) { tellTheHaServer(record, removeAll()); }},
    {"behind the end", [](Record&, KitStory& story) { story.mistakes.emplace_back("behind the end"); }},
};

}  // namespace

TEST(Verdict, FindsNothingInAGoodStory) {
  EXPECT_EQ(disagreementsIn(goodRecord(), goodStory()), std::vector<std::string>{});
}

TEST(Verdict, FindsEveryAlteration) {
  for (const AlteredStory& each : kAltered) {
    KitStory story = goodStory();
    Record record = goodRecord();
    each.alter(record, story);
    const auto found = disagreementsIn(record, story);
    EXPECT_TRUE(std::ranges::any_of(found, [&](const std::string& line) {
      return line.find(each.found) != std::string::npos;
    })) << each.found;
  }
}

}  // namespace campaign
