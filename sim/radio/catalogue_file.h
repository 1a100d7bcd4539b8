// What the catalogue files of the radios have in common.
#ifndef TEMBRA_SIM_RADIO_CATALOGUE_FILE_H
#define TEMBRA_SIM_RADIO_CATALOGUE_FILE_H

#include <filesystem>
#include <functional>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>

namespace tembra::sim {

/// Throws the sentence unless the condition holds.
void require(bool condition, const std::string& sentence);

int numberFrom(const nlohmann::json& value, int smallest, int largest);
std::string labelFrom(const nlohmann::json& value);

/// The label in a device's name, which is a label or a label and a number ("dimmer#2", a second dimmer); empty when the
/// name is neither.
std::string_view labelIn(std::string_view name);

/// Hands every device of a file over; throws one sentence that says what is wrong where.
void readCatalogue(const std::filesystem::path& file, const std::function<void(const nlohmann::json&)>& take);

}  // namespace tembra::sim

#endif
