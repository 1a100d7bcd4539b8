// The kit's events and phases as sentences for people.
#ifndef TEMBRA_CLI_EVENT_TEXT_H
#define TEMBRA_CLI_EVENT_TEXT_H

#include <string>
#include <tembra/frontend.hpp>

namespace tembra::cli {

/// "ZigBee" or "Z-Wave".
[[nodiscard]] std::string radioText(Radio radio);

/// "Siren #1 (id 1)".
[[nodiscard]] std::string numberedName(const std::string& name, int id);

/// "Press the button of the device to add"; empty where nothing is awaited.
[[nodiscard]] std::string awaitedText(Operation operation, Phase phase);

/// One sentence, or several lines; empty for an event that has nothing of lasting interest.
[[nodiscard]] std::string eventText(const Event& event);

/// What happened and what to do about it.
[[nodiscard]] std::string endText(const Ended& ended);

}  // namespace tembra::cli

#endif
