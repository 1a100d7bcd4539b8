// Questions to the user.
#ifndef TEMBRA_CLI_QUESTIONS_H
#define TEMBRA_CLI_QUESTIONS_H

#include <optional>
#include <string>
#include <vector>

#include "cli/context.h"
#include "cli/dialogue/dialogue.h"

namespace tembra::cli {

/// Asks before something that drops devices; --yes answers for the user. Throws Failure when the answer is not yes, or
/// when nobody can be asked.
void confirm(const Context& context, const std::string& question);

/// Asks a person who is there. Nothing is done by an answer but yes.
[[nodiscard]] bool agree(const Context& context, const std::string& question);

/// Drops the keys that were typed at the terminal before there was a question: they answer none.
void dropEarlyKeys();

/// The user's text at the terminal while the operation runs. Nothing when the user ends the input.
[[nodiscard]] std::optional<std::string> ask(Dialogue& dialogue, const std::string& question);

/// The index of the choice that the user takes by its number or its name; an empty answer takes the first. Throws
/// Failure when the input ends.
[[nodiscard]] std::size_t askChoice(Dialogue& dialogue, const std::string& question,
                                    const std::vector<std::string>& choices);

/// A line that no screen shows: from the user at the terminal, or from what else standard input is. Empty when there is
/// none.
[[nodiscard]] std::string askSecret(const Context& context, const std::string& question);

}  // namespace tembra::cli

#endif
