// Where a report's parts come from, with the names as they are.
#ifndef TEMBRA_CLI_SOURCES_H
#define TEMBRA_CLI_SOURCES_H

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "cli/context.h"
#include "cli/doctor/facts/router.h"
#include "cli/report/stand_ins.h"

namespace tembra::cli::report {

using Objects = std::vector<nlohmann::ordered_json>;

[[nodiscard]] std::string versionsText();

/// Settings of this program's environment and of the kernel, one a line.
[[nodiscard]] std::string configurationText(const Context& context);

/// The device list, with the texts that tell a Hue device's bridge and user.
[[nodiscard]] Objects deviceList(const doctor::Snapshot& database);

/// The end of a file, whole lines. Throws Failure.
[[nodiscard]] std::string endOfLog(const std::string& path);

/// The whole of a file. Throws Failure.
[[nodiscard]] std::string wholeFile(const std::string& path);

/// What only the router knows: its own MAC addresses and name, the users of the system, the Nest code.
void learnFromSystem(StandIns& standIns);

/// Names and places in lines that the library logs.
void learnFromLog(const std::string& log, StandIns& standIns);

}  // namespace tembra::cli::report

#endif
