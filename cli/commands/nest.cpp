// tembra-assoc nest: links and unlinks the Nest account.
#include <CLI/CLI.hpp>
#include <memory>

#include "cli/commands/commands.h"
#include "cli/dialogue/dialogue.h"
#include "cli/dialogue/questions.h"
#include "cli/failure.h"
#include "cli/words/texts.h"

namespace tembra::cli {
namespace {

// The library would cut it without a word.
std::string checkCode(const std::string& code) {
  constexpr std::size_t kLongest = 247;
  return code.size() <= kLongest ? "" : "the code is longer than " + std::to_string(kLongest) + " bytes";
}

std::string codeOf(const Context& context, const std::string& argument) {
  if (argument != "-") {
    context.display.complain(
        "every user of this machine can see the code on the command line; \"nest link -\" asks for it instead.");
    return argument;
  }
  std::string code = withoutBlanksAround(askSecret(context, "The account's authorisation code"));
  if (code.empty()) throw Failure(kUsage, "no code was given.");
  if (const std::string mistake = checkCode(code); !mistake.empty()) throw Failure(kUsage, mistake + ".");
  return code;
}

void linkNest(const Context& context, const std::string& argument) {
  // The code is a secret, which nothing on the screen shows.
  const std::string code = codeOf(context, argument);
  Dialogue(context).run("nest link", [&code](Frontend& kit) { return kit.nestLink(code); });
}

void unlinkNest(const Context& context) {
  confirm(context, "Unlink the Nest account? Its devices leave the home.");
  Dialogue(context).run("nest unlink", &Frontend::nestUnlink);
}

void tellNestStatus(const Context& context) { Dialogue(context).run("nest status", &Frontend::nestStatus); }

}  // namespace

void declareNest(CLI::App& program, Action& action) {
  CLI::App* nest = program.add_subcommand("nest", "the Nest account");
  CLI::App* status = nest->add_subcommand("status", "tell whether a Nest account is linked");
  status->callback([&action] { action = tellNestStatus; });
  CLI::App* link = nest->add_subcommand("link", "link a Nest account");
  auto code = std::make_shared<std::string>();
  link->add_option("code", *code, "the account's authorisation code; - to be asked for it, or from standard input")
      ->check(checkCode)
      ->required();
  link->callback([&action, code] { action = [code](const Context& context) { linkNest(context, *code); }; });
  CLI::App* unlink = nest->add_subcommand("unlink", "unlink the Nest account");
  unlink->callback([&action] { action = unlinkNest; });
}

}  // namespace tembra::cli
