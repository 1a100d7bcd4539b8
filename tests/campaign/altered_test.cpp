// The judge can find everything that it looks at: a run that agrees is altered afterwards, and then it does not.
#include <gtest/gtest.h>

#include <ostream>

#include "campaign/child.h"
#include "campaign/command_text.h"

namespace campaign {
namespace {

struct AlteredRow {
  const char* what;
  unsigned long seed;
  void (*alter)(Record& record);
};

void PrintTo(const AlteredRow& row, std::ostream* stream) { *stream << row.what; }

constexpr unsigned long kZwaveAdd = 0;
constexpr unsigned long kZwaveAddTimeout = 1;
constexpr unsigned long kZigbeeAdd = 32;
constexpr unsigned long kNestLink = 176;

// Alters the datagrams of the library that read so.
void forget(Record& record, const std::string& told) {
  std::erase_if(record.wire, [&told](const Datagram& datagram) { return commandText(datagram) == told; });
}

void repeatNotices(Record& record) {
  const std::vector<Datagram> before = record.wire;
  for (const Datagram& datagram : before) {
    if (datagram.to == kHaAddress) record.wire.push_back(datagram);
  }
}

constexpr AlteredRow kAlteredRows[] = {
    {"AnotherStatus", kZwaveAdd, [](Record& record) { record.status = 1; }},
    {"ATimeoutWithStatusZero", kZwaveAddTimeout, [](Record& record) { record.status = 0; }},
    {"AnInterruptionThatWasNone", kZwaveAdd, [](Record& record) { record.status = 130; }},
    {"TheLastEventUnseen", kZwaveAdd, [](Record& record) { record.seen.pop_back(); }},
    {"TheTimeoutUnseen", kZwaveAddTimeout, [](Record& record) { record.seen.pop_back(); }},
    {"AnEventTwice", kZwaveAdd, [](Record& record) { record.seen.push_back(record.seen.back()); }},
    {"AnEventTooLate", kZwaveAdd, [](Record& record) { record.seen.front().at += kSecond; }},
    {"AnEventTooEarly", kZwaveAdd, [](Record& record) { record.seen.front().at -= kSecond; }},
    {"AnEndTooLate", kZwaveAdd, [](Record& record) { record.ended += kSecond; }},
    {"ADeviceLost", kZwaveAdd, [](Record& record) { record.after.devices.clear(); }},
    {"ADeviceTwice", kZwaveAdd, [](Record& record) { record.after.devices.push_back(record.after.devices.back()); }},
    {"ADeviceInSpiteOfATimeout", kZwaveAddTimeout, [](Record& record) { record.after.devices.emplace_back(); }},
    {"AnotherName", kZwaveAdd, [](Record& record) { record.after.devices.back().name += "x"; }},
    {"AnotherType", kZwaveAdd, [](Record& record) { record.after.devices.back().type = "Siren#"; }},
    {"AnotherAddress", kZigbeeAdd, [](Record& record) { ++record.after.devices.back().address; }},
    {"AValueLost", kZigbeeAdd, [](Record& record) { record.after.devices.back().slots.pop_back(); }},
    {"AStrayRecord", kZigbeeAdd, [](Record& record) { record.after.mistakes.emplace_back("something is odd"); }},
    {"TheHaServerToldTwice", kZwaveAdd, repeatNotices},
    {"TheOtherRadioNotCancelled", kZwaveAdd, [](Record& record) { forget(record, "zigbee cancel"); }},
    {"ATimeoutThatCancelsNothing", kZwaveAddTimeout, [](Record& record) { forget(record, "zwave cancel"); }},
    {"AnAccountThatWasNotKept", kNestLink, [](Record& record) { record.linkedAfter = false; }},
};

class AlteredRun : public testing::TestWithParam<AlteredRow> {};

TEST_P(AlteredRun, IsFound) {
  const Plan plan = planFor(GetParam().seed);
  ASSERT_EQ(playInChild(plan).status, 0) << "the run itself agrees";
  const Child altered = playInChild(plan, [](Record& record) { GetParam().alter(record); });
  EXPECT_NE(altered.status, 0);
  EXPECT_NE(altered.report, "");
}

INSTANTIATE_TEST_SUITE_P(Judge, AlteredRun, testing::ValuesIn(kAlteredRows),
                         [](const auto& row) { return std::string(row.param.what); });

}  // namespace
}  // namespace campaign
