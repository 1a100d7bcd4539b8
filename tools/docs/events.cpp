// The event list, from the table that front ends print events by.
#include <fstream>

#include "docs/pages.h"
#include "frontend/event_names.h"

namespace {

using tembra::frontend::EventRow;
using tembra::frontend::Payload;

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

}  // namespace

bool docs::writeEvents(const std::filesystem::path& path) {
  std::ofstream out(path);
  out << "# Events\n\n"
         "Made by `make-docs` from the front ends' event table; do not edit.\n\n"
         "Where the payload is not defined, and in bytes that an event does not define, it holds what the library's\n"
         "buffer held before. An event whose source is not written keeps the source of the event before it in the "
         "same\n"
         "buffer.\n\n"
         "| Code | Name | From | Source word | Payload | Meaning |\n|---|---|---|---|---|---|\n";
  for (const EventRow& row : tembra::frontend::eventTable()) {
    out << "| " << row.code << " | " << row.name << " | " << row.sources << " | "
        << (row.tellsSource ? "written" : "not written") << " | " << payloadText(row.payload) << " | " << row.meaning
        << " |\n";
  }
  return static_cast<bool>(out.flush());
}
