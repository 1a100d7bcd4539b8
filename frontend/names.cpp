#include "names.h"

#include <tembra/frontend.h>
#include <tembra/platform.h>
#include <tembra/vocabulary.h>

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
constexpr const char* kRadios[] = {"other", "ZigBee", "Z-Wave", "IP"};
constexpr const char* kServers[] = {nullptr, "ZigBee", "Z-Wave", "Hue", "Nest", "HA", "mesh"};

// The kit passes these numbers on as they are.
static_assert(int{TEMBRA_ROLE_WEB_SERVER} == ROLE_WEB_SERVER && int{TEMBRA_ROLE_TOUCH_SCREEN} == ROLE_LCD &&
              int{TEMBRA_ROLE_CLOUD_AGENT} == ROLE_CLOUD_APPS && int{TEMBRA_ROLE_MESH_SERVER} == ROLE_MESH_SERVER &&
              int{TEMBRA_ROLE_FREE_1} == ROLE_FREE_USER_1 && int{TEMBRA_ROLE_FREE_2} == ROLE_FREE_USER_2);
static_assert(int{TEMBRA_SERVER_ZIGBEE} == SERVER_ZIGBEE && int{TEMBRA_SERVER_ZWAVE} == SERVER_ZWAVE &&
              int{TEMBRA_SERVER_HUE} == SERVER_HUE && int{TEMBRA_SERVER_NEST} == SERVER_NEST &&
              int{TEMBRA_SERVER_HA} == SERVER_HA && int{TEMBRA_SERVER_MESH} == SERVER_MESH);
static_assert(int{TEMBRA_RESET_ZIGBEE} == reset_zigbee && int{TEMBRA_RESET_ZWAVE} == reset_zwave &&
              int{TEMBRA_RESET_BOTH} == reset_both &&
              int{TEMBRA_RESET_BOTH_AND_DEVICE_LIST} == reset_both_and_remove_all);

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
const char* tembra_radio_name(int radio) { return nameIn(kRadios, radio); }
const char* tembra_server_name(int server) { return serverName(server); }
