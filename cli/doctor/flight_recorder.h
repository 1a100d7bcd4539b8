// The flight recorder of the front end that has the connection.
#ifndef TEMBRA_CLI_DOCTOR_FLIGHT_RECORDER_H
#define TEMBRA_CLI_DOCTOR_FLIGHT_RECORDER_H

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

namespace tembra::cli::doctor {

/// Its entries, oldest first, as tembra-history.schema.json has them. None: nobody serves there, or says nothing in a
/// second.
[[nodiscard]] std::vector<nlohmann::json> readFlightRecorder(const std::string& watchPath);

}  // namespace tembra::cli::doctor

#endif
