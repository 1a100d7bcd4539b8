#include "questions.h"

#include <termios.h>
#include <unistd.h>

#include <iostream>
#include <optional>

#include "failure.h"

namespace tembra::cli {
namespace {

void endLine() { std::cout << std::endl; }

std::optional<std::string> ask(const Context& context, const std::string& question, const OnEvent& onEvent) {
  context.display.makeRoom();
  std::cout << question << std::flush;
  try {
    auto answer = context.attention.readLine([&onEvent] {
      endLine();
      onEvent();
    });
    if (!answer) endLine();
    return answer;
  } catch (const Interrupted&) {
    endLine();
    throw;
  }
}

/// While it lives, the terminal does not show what is typed.
class Unseen {
 public:
  Unseen() : isTerminal_(tcgetattr(STDIN_FILENO, &before_) == 0) {
    termios unseen = before_;
    unseen.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    if (isTerminal_) tcsetattr(STDIN_FILENO, TCSAFLUSH, &unseen);
  }
  ~Unseen() {
    if (isTerminal_) tcsetattr(STDIN_FILENO, TCSAFLUSH, &before_);
  }
  Unseen(const Unseen&) = delete;
  Unseen& operator=(const Unseen&) = delete;

 private:
  termios before_{};
  bool isTerminal_;
};

// Nothing when the answer is neither a number from 1 on nor one of the choices.
std::optional<std::size_t> pick(const std::vector<std::string>& choices, const std::string& answer) {
  for (std::size_t i = 0; i < choices.size(); ++i) {
    if (answer == choices[i] || answer == std::to_string(i + 1)) return i;
  }
  return std::nullopt;
}

}  // namespace

void confirm(const Context& context, const std::string& consequence) {
  if (context.options.yes) return;
  if (!context.options.mayAsk()) throw Failure(kUsage, consequence + " Where nobody can be asked, --yes confirms.");
  const auto answer = ask(context, consequence + " Go on? [y/N] ", [] {});
  const bool agreed = answer && (*answer == "y" || *answer == "Y" || *answer == "yes");
  if (!agreed) throw Failure(kFailed, "not confirmed, nothing was done.");
}

std::string askText(const Context& context, const std::string& question, const std::string& proposal,
                    const OnEvent& onEvent) {
  const auto answer = ask(context, question + " [" + proposal + "]: ", onEvent);
  return !answer || answer->empty() ? proposal : *answer;
}

std::string askSecret(const Context& context, const std::string& question) {
  const bool asked = isatty(STDIN_FILENO) == 1;
  const Unseen unseen;
  context.display.makeRoom();
  if (asked) std::cerr << question << " (it is not shown): " << std::flush;
  const auto answer = context.attention.readLine([] {});
  if (asked) std::cerr << std::endl;
  return answer.value_or("");
}

std::size_t askChoice(const Context& context, const std::string& question, const std::vector<std::string>& choices,
                      const OnEvent& onEvent) {
  context.display.note(question);
  for (std::size_t i = 0; i < choices.size(); ++i) {
    context.display.note("  " + std::to_string(i + 1) + "  " + choices[i]);
  }
  while (true) {
    const std::string range = "1 to " + std::to_string(choices.size());
    const auto answer = ask(context, "Number or name (" + range + "): ", onEvent);
    if (!answer) throw Failure(kFailed, "no type was chosen.");
    if (const auto picked = pick(choices, *answer)) return *picked;
    context.display.note("Please answer with " + range + " or with one of the names.");
  }
}

}  // namespace tembra::cli
