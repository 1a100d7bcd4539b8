// The event list, from the table that front ends print events by.
#include <fstream>

#include "docs/pages.h"
#include "words/event_names.h"

namespace {

using tembra::words::Ends;
using tembra::words::EventRow;
using tembra::words::Payload;

const char* payloadText(Payload payload) {
  switch (payload) {
    case Payload::kNone:
      return "not defined";
    case Payload::kTimeout:
      return "`TimeoutReport`";
    case Payload::kProgress:
      return "`DeviceReport` with status and JSON text from ZigBee, not defined from Z-Wave";
    case Payload::kChoice:
      return "`DeviceReport` with type and sub-types";
    case Payload::kCreated:
      return "`DeviceReport` with name, location, type";
    case Payload::kRemoved:
      return "`DeviceReport` with removed name and id";
    case Payload::kBridges:
      return "`HueBridgeList`";
    case Payload::kJson:
      return "JSON text";
    case Payload::kNest:
      return "`NestAnswer`";
  }
  return "";
}

const char* endsText(Ends ends) {
  switch (ends) {
    case Ends::kNo:
      return "no";
    case Ends::kYes:
      return "yes";
    case Ends::kLaterFromZwave:
      return "ZigBee: yes; Z-Wave: when `idle` is 1 again, with the closing answer or the time-out of 20 s";
  }
  return "";
}

constexpr char kEventsIntroduction[] = R"(# Events

Made by `make-docs` from the front ends' event table; do not edit.

What leads to each event stands in [state-machine.md](state-machine.md).

| Code | Name | From | Ends the operation | Meaning | For users |
|---|---|---|---|---|---|
)";

constexpr char kPayloads[] = R"(
## Payloads

A payload that is not defined, and bytes that an event does not define, hold what the library's buffer held before. An
event whose source word is not written keeps the source of the event before it in the same buffer.

| Code | Name | Source word | Payload |
|---|---|---|---|
)";

}  // namespace

bool docs::writeEvents(const std::filesystem::path& path) {
  std::ofstream out(path);
  out << kEventsIntroduction;
  for (const EventRow& row : tembra::words::eventTable()) {
    out << "| " << row.code << " | " << row.name << " | " << row.sources << " | " << endsText(row.ends) << " | "
        << row.meaning << " | " << row.sentence << " |\n";
  }
  out << kPayloads;
  for (const EventRow& row : tembra::words::eventTable()) {
    out << "| " << row.code << " | " << row.name << " | " << (row.tellsSource ? "written" : "not written") << " | "
        << payloadText(row.payload) << " |\n";
  }
  return static_cast<bool>(out.flush());
}
