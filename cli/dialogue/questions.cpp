#include "cli/dialogue/questions.h"

#include <termios.h>
#include <unistd.h>

#include <functional>
#include <nlohmann/json.hpp>

#include "cli/dialogue/line_editor.h"
#include "cli/failure.h"

namespace tembra::cli {
namespace {

constexpr std::chrono::milliseconds kLook{200};

/// While it lives, the terminal passes every key on at once and shows none.
class SingleKeys {
 public:
  SingleKeys() : isTerminal_(tcgetattr(STDIN_FILENO, &before_) == 0) {
    termios single = before_;
    single.c_lflag &= ~static_cast<tcflag_t>(ECHO | ICANON);
    if (isTerminal_) tcsetattr(STDIN_FILENO, TCSADRAIN, &single);
  }
  ~SingleKeys() {
    if (isTerminal_) tcsetattr(STDIN_FILENO, TCSADRAIN, &before_);
  }
  SingleKeys(const SingleKeys&) = delete;
  SingleKeys& operator=(const SingleKeys&) = delete;

 private:
  termios before_{};
  bool isTerminal_;
};

/// Leaves the question on the screen, however the asking ends.
class Prompt {
 public:
  explicit Prompt(Display& display) : display_(display) {}
  ~Prompt() { display_.endPrompt(); }
  Prompt(const Prompt&) = delete;
  Prompt& operator=(const Prompt&) = delete;

 private:
  Display& display_;
};

enum class Shown { kTyped, kNothing };

// What is typed until Enter; `wait` passes the time.
std::optional<std::string> readTyped(const Context& context, const std::string& question, Shown shown,
                                     const std::function<std::optional<int>()>& seconds,
                                     const std::function<void()>& wait) {
  const SingleKeys keys;
  const Prompt prompt(context.display);
  LineEditor editor;
  while (true) {
    context.display.prompt(question, seconds(), shown == Shown::kTyped ? editor.text() : "");
    wait();
    while (const auto byte = context.attention.takeByte()) {
      const LineEditor::State state = editor.take(*byte);
      if (state == LineEditor::State::kGoesOn) continue;
      context.display.prompt(question, seconds(), shown == Shown::kTyped ? editor.text() : "");
      return state == LineEditor::State::kEntered ? std::optional(editor.text()) : std::nullopt;
    }
    if (context.attention.inputIsOver()) return std::nullopt;
  }
}

std::optional<std::string> readAlone(const Context& context, const std::string& question, Shown shown) {
  const auto untimed = [] { return std::optional<int>(); };
  return readTyped(context, question, shown, untimed,
                   [&context] { context.attention.wait(Attention::kNoDescriptor, Attention::Input::kAwaited, kLook); });
}

// Nothing when the answer is neither a number from 1 on nor one of the choices.
std::optional<std::size_t> pick(const std::vector<std::string>& choices, const std::string& answer) {
  if (answer.empty()) return 0;
  for (std::size_t i = 0; i < choices.size(); ++i) {
    if (answer == choices[i] || answer == std::to_string(i + 1)) return i;
  }
  return std::nullopt;
}

// A program's answer; nothing when it is neither.
std::optional<bool> agreementIn(const std::string& line) {
  const auto said = nlohmann::json::parse(line, nullptr, false);
  if (!said.is_object()) return std::nullopt;
  if (said.contains("cancel") && said["cancel"] == true) return false;
  return said.contains("confirm") && said["confirm"].is_boolean() ? std::optional(said["confirm"] == true)
                                                                  : std::nullopt;
}

bool isAgreedByProgram(const Context& context, const std::string& question) {
  while (true) {
    context.display.ask({{"question", "confirm"}, {"text", question}});
    const auto line = context.attention.readLine();
    if (!line) throw Failure(kUsage, question + " Where nobody can be asked, --yes confirms.");
    if (const auto agreement = agreementIn(*line)) return *agreement;
    context.display.complain(R"(the answer is neither {"confirm":true} nor {"confirm":false}.)");
  }
}

bool isAgreed(const Context& context, const std::string& question) {
  if (context.options.mayAsk()) return agree(context, question);
  if (context.options.mayAskProgram()) return isAgreedByProgram(context, question);
  throw Failure(kUsage, question + " Where nobody can be asked, --yes confirms.");
}

}  // namespace

bool agree(const Context& context, const std::string& question) {
  context.display.note(question);
  const auto answer = readAlone(context, "Yes or no [y/N]", Shown::kTyped);
  return answer && (*answer == "y" || *answer == "Y" || *answer == "yes");
}

void confirm(const Context& context, const std::string& question) {
  if (context.options.yes) return;
  if (!isAgreed(context, question)) throw Failure(kFailed, "not confirmed, nothing was done.");
}

void dropEarlyKeys() { tcflush(STDIN_FILENO, TCIFLUSH); }

std::optional<std::string> ask(Dialogue& dialogue, const std::string& question) {
  return readTyped(
      dialogue.context(), question, Shown::kTyped, [&dialogue] { return dialogue.secondsLeft(); },
      [&dialogue] { dialogue.waitForUser(); });
}

std::string askSecret(const Context& context, const std::string& question) {
  if (isatty(STDIN_FILENO) != 1) return context.attention.readLine().value_or("");
  return readAlone(context, question + " (it is not shown)", Shown::kNothing).value_or("");
}

std::size_t askChoice(Dialogue& dialogue, const std::string& question, const std::vector<std::string>& choices) {
  Display& display = dialogue.context().display;
  const std::string range = "1 to " + std::to_string(choices.size());
  while (true) {
    display.note(question);
    for (std::size_t i = 0; i < choices.size(); ++i) {
      display.note("  " + std::to_string(i + 1) + "  " + choices[i] + (i == 0 ? " (proposed)" : ""));
    }
    const auto answer = ask(dialogue, "Number or name, Enter for 1");
    if (!answer) throw Failure(kFailed, "no type was chosen, so the device was not added.");
    if (const auto picked = pick(choices, *answer)) return *picked;
    display.note("Please answer with " + range + " or with one of the names.");
  }
}

}  // namespace tembra::cli
