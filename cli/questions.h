// Questions to the user.
#ifndef TEMBRA_CLI_QUESTIONS_H
#define TEMBRA_CLI_QUESTIONS_H

#include <functional>
#include <string>
#include <vector>

#include "context.h"

namespace tembra::cli {

/// Called for events that arrive while the user thinks; throws when they make the question pointless.
using OnEvent = std::function<void()>;

/// Asks whether to go on with something that drops devices; --yes answers for the user. Throws Failure when the answer
/// is not yes, or when nobody can be asked.
void confirm(const Context& context, const std::string& consequence);

/// The user's text; the proposal when the answer is empty.
[[nodiscard]] std::string askText(const Context& context, const std::string& question, const std::string& proposal,
                                  const OnEvent& onEvent);

/// The index of the choice that the user takes by its number or its name. Throws Failure when the input ends.
[[nodiscard]] std::size_t askChoice(const Context& context, const std::string& question,
                                    const std::vector<std::string>& choices, const OnEvent& onEvent);

/// A line that no screen shows: from the user at the terminal, or from what else standard input is. Empty when there is
/// none.
[[nodiscard]] std::string askSecret(const Context& context, const std::string& question);

}  // namespace tembra::cli

#endif
