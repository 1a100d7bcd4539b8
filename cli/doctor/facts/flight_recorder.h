// The flight recorder of a front end: of the one that has the connection, or else of the one that failed last.
#ifndef TEMBRA_CLI_DOCTOR_FLIGHT_RECORDER_H
#define TEMBRA_CLI_DOCTOR_FLIGHT_RECORDER_H

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

namespace tembra::cli::doctor {

/// Its entries, oldest first, as tembra-history.schema.json has them. None: there is none, or this user may not ask.
[[nodiscard]] std::vector<nlohmann::json> readFlightRecorder(const std::string& watchPath);

}  // namespace tembra::cli::doctor

#endif
