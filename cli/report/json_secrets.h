// Names, places, users and codes in JSON objects: the kit's events, the flight recorder, the device list.
#ifndef TEMBRA_CLI_JSON_SECRETS_H
#define TEMBRA_CLI_JSON_SECRETS_H

#include <nlohmann/json_fwd.hpp>

#include "cli/report/stand_ins.h"

namespace tembra::cli::report {

void learnFrom(const nlohmann::ordered_json& value, StandIns& standIns);

/// The same value with stand-ins. Members whose texts are the kit's own words stay.
[[nodiscard]] nlohmann::ordered_json replaced(const nlohmann::ordered_json& value, const StandIns& standIns);

}  // namespace tembra::cli::report

#endif
