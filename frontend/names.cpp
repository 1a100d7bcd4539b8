#include "names.h"

#include <tembra/frontend.h>
#include <tembra/platform.h>

#include "texts.h"

namespace tembra::frontend {
namespace {

template <std::size_t N>
const char* nameIn(const char* const (&names)[N], int number) {
  return number >= 0 && number < static_cast<int>(N) ? names[number] : nullptr;
}

constexpr const char* kOperations[] = {"none",           "add",          "remove",      "reset",      "hue-discover",
                                       "hue-add-bridge", "hue-add-bulb", "hue-refresh", "hue-remove", "hue-list",
                                       "nest-status",    "nest-link",    "nest-unlink", "devices"};
constexpr const char* kEventKinds[] = {nullptr,    "waiting", "answered", "reading",     "found",         "added",
                                       "removing", "removed", "bridges",  "link-button", "bridge-linked", "bulb-added",
                                       "account",  "step",    "warning",  "ended",       "devices"};
constexpr const char* kPhases[] = {"none",      "opening",  "button",  "identity",     "description",
                                   "choice",    "storing",  "leaving", "answer",       "link-button",
                                   "resetting", "database", "closing", "leave-button", "emptying"};
constexpr const char* kOutcomes[] = {nullptr, "done", "cancelled", "timed-out", "failed"};
constexpr const char* kServers[] = {nullptr, "ZigBee", "Z-Wave", "Hue", "Nest", "HA", "mesh"};

}  // namespace

const char* operationName(int operation) { return nameIn(kOperations, operation); }
const char* eventKindName(int kind) { return nameIn(kEventKinds, kind); }
const char* phaseName(int phase) { return nameIn(kPhases, phase); }
const char* outcomeName(int outcome) { return nameIn(kOutcomes, outcome); }
const char* serverName(int server) { return nameIn(kServers, server); }

// The router's library knows of 180 bytes; nothing stops it from writing more.
std::string typeName(int type) {
  char name[512] = {};
  DevtypeEnumToStr(static_cast<DevType>(type), name);
  name[sizeof name - 1] = '\0';
  return libraryText(name);
}

}  // namespace tembra::frontend

using namespace tembra::frontend;

const char* tembra_operation_name(int operation) { return operationName(operation); }
const char* tembra_event_kind_name(int kind) { return eventKindName(kind); }
const char* tembra_phase_name(int phase) { return phaseName(phase); }
const char* tembra_outcome_name(int outcome) { return outcomeName(outcome); }
