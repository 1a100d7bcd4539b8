#include "hue_entries.h"
#include "model.h"
#include "offsets.h"

namespace oracle {
namespace {

constexpr int kWebServer = 1;
constexpr int kMostBridges = 25;

struct HueResult {
  int type;
  int code;
  const char* begin;
  const char* end;
};

constexpr char kBlank[] = R"(", "MobileInternalIndex":"","Success":"true","Type":)";

constexpr HueResult kHueResults[] = {
    {1, 30, R"(","MobileInternalIndex":"","Success":"false","Reason":"HueFailed","Type":"HueHub"})", ""},
    {2, 25, R"(","MobileInternalIndex":"","Success":"true","Type":"HueHub","Reason":"HueAdded"})", ""},
    {3, 27, R"(","MobileInternalIndex":"","Success":"false","Reason":"HueBridgeNotFound","Type":"HueHub"})", ""},
    {4, 26, R"(","MobileInternalIndex":"","Success":"false","Type":"HueHub","Reason":"HueButtonNotPressed"})", ""},
    {5, 28, R"(","MobileInternalIndex":"","Success":"false","Type":"HueHub","Reason":"BridgeNotFound"})", ""},
    {6, 29, kBlank, R"("HueBulb"})"},
    {8, 22, kBlank, R"("HueHub"})"},
    {9, 23, kBlank, R"("HueHub"})"}};

struct NestEvent {
  int command;
  int status;
  int code;
};

constexpr int kAnyStatus = -77;

constexpr NestEvent kNestEvents[] = {{100, kAnyStatus, 44}, {121, kAnyStatus, 41}, {122, kAnyStatus, 43},
                                     {123, kAnyStatus, 42}, {124, 0, 45},          {124, -1, 46}};

// The text of an entry of the answer; behind all entries there is none.
std::string entryText(const Record<4096>& buffer, int entry) {
  const std::size_t at = 8 + 65 * static_cast<std::size_t>(entry);
  return buffer.text(at, 65);
}

}  // namespace

void Model::hueAnswer() {
  std::copy_n(buffer.bytes.begin(), 3260, eventC.bytes.begin());
  const int type = buffer.number(0);
  const auto* row = std::find_if(std::begin(kHueResults), std::end(kHueResults),
                                 [=](const HueResult& each) { return each.type == type; });
  if (type == 0) {
    hueBridges();
  } else if (row == std::end(kHueResults)) {
    log(2, "libTembraAssoc:Got unknown state from HUE");
  } else {
    eventA.setText(R"({"CommandType":")" + cmdtype.text(0, 59) + row->begin + row->end + "\n", kPayload);
    event(eventA, row->code, row->code == 30 ? eventA.number(kEventSource) : kHue);
    idle = 1;
  }
  if (role == kWebServer) closeSilently();
}

void Model::hueBridges() {
  Record<3256> list;
  std::string id;
  std::string address;
  int filled = 0;
  for (; filled < buffer.number(4) && filled < kMostBridges; ++filled) {
    const HueEntry* entry = findHueEntry(entryText(buffer, filled));
    if (entry == nullptr) {
      unforeseen = true;
      continue;
    }
    if (entry->id != nullptr) id = entry->id;
    if (entry->address != nullptr) address = entry->address;
    const auto slot = static_cast<std::size_t>(filled);
    list.setText(macOf(id), 30 * slot, 30);
    list.setText(address, 750 + 50 * slot, 50);
  }
  list.setNumber(3252, filled);
  eventB.put(list, kPayload);
  event(eventB, 21, kHue);
  idle = 0;
  cmdtype.setText("AddIPDevice");
}

void Model::nestAnswer() {
  Record<12> answer;
  std::copy_n(buffer.bytes.begin(), answer.bytes.size(), answer.bytes.begin());
  const int command = answer.number(0);
  const int status = answer.number(4);
  const auto* row = std::find_if(std::begin(kNestEvents), std::end(kNestEvents), [=](const NestEvent& each) {
    return each.command == command && (each.status == kAnyStatus || each.status == status);
  });
  if (row != std::end(kNestEvents)) {
    if (row->code == 44) eventC.put(answer, kPayload);
    event(eventC, row->code, kNest);
  } else if (command != 124) {
    log(2, "libTembraAssoc:Got unknown command from NEST");
  }
  idle = 1;
  if (role == kWebServer) closeSilently();
}

}  // namespace oracle
