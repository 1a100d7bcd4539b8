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

/// What an entry of a file has under a name; each throws a sentence where it has nothing, or something else.
const nlohmann::json& memberOf(const nlohmann::json& entry, const std::string& name);
const nlohmann::json& listIn(const nlohmann::json& entry, const std::string& name);
std::string textIn(const nlohmann::json& entry, const std::string& name);
std::string labelOf(const nlohmann::json& entry);

int numberFrom(const nlohmann::json& value, int smallest, int largest);

/// The label in a device's name, which is a label or a label and a number ("dimmer#2", a second dimmer); empty when the
/// name is neither.
std::string_view labelIn(std::string_view name);

/// Hands every device of a file over; throws one sentence that says what is wrong where.
void readCatalogue(const std::filesystem::path& file, const std::function<void(const nlohmann::json&)>& take);

}  // namespace tembra::sim

#endif
