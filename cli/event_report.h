// One event as a line for people and as a JSON object for programs.
#ifndef TEMBRA_CLI_EVENT_REPORT_H
#define TEMBRA_CLI_EVENT_REPORT_H

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

#include "event_inbox.h"

namespace tembra::cli {

/// The device report of an event that carries one.
[[nodiscard]] DeviceReport deviceReport(const HeardEvent& heard);

/// A Hue bridge that was found.
struct FoundBridge {
  std::string mac;
  std::string address;
};

/// Those of an EVENT_HUE_BRIDGES.
[[nodiscard]] std::vector<FoundBridge> foundBridges(const HeardEvent& heard);

/// The types that the user may choose.
[[nodiscard]] std::vector<DevType> choices(const DeviceReport& report);

/// The type of the device of an EVENT_SELECT_TYPE or EVENT_CREATED. The report of a Z-Wave device that was just
/// created does not know it: it carries the type that was chosen last.
[[nodiscard]] DevType createdType(const HeardEvent& heard);

/// "SELECT_TYPE from Z-Wave: MeterSwitch, choose MultiSwitch or MeterSwitch"
[[nodiscard]] std::string describeEvent(const HeardEvent& heard);

/// {"event":"SELECT_TYPE","code":6,"source":"Z-Wave","type":{...},"choices":[...]}
[[nodiscard]] nlohmann::ordered_json eventJson(const HeardEvent& heard);

/// One line of JSON; bytes that are no UTF-8 are replaced.
[[nodiscard]] std::string jsonLine(const nlohmann::ordered_json& object);

}  // namespace tembra::cli

#endif
