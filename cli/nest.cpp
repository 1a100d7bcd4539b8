// tembra-assoc nest: links and unlinks the Nest account.
#include <tembra/records.h>

#include <CLI/CLI.hpp>
#include <array>
#include <memory>
#include <nlohmann/json.hpp>

#include "commands.h"
#include "connection.h"
#include "event_report.h"
#include "failure.h"
#include "ip_operation.h"
#include "questions.h"

namespace tembra::cli {
namespace {

// The library tells the answers apart by number only: that 41 confirms a link and 43 an unlink is the server's custom.
constexpr std::array<int, 2> kLinked = {EVENT_NEST_41, EVENT_NEST_45};
constexpr std::array<int, 2> kUnlinked = {EVENT_NEST_43, EVENT_NEST_45};

constexpr Refusal kNestRefusals[] = {
    {EVENT_NEST_46, "the Nest server failed to do it; for a link the authorisation code may be wrong."},
};

// The library would cut it without a word.
std::string checkCode(const std::string& code) {
  constexpr std::size_t kLongest = sizeof NestCommand::text - 1;
  return code.size() <= kLongest ? "" : "the code is longer than " + std::to_string(kLongest) + " bytes";
}

std::string codeOf(const Context& context, const std::string& argument) {
  if (argument != "-") {
    complain("every user of this machine can see the code on the command line; \"nest link -\" asks for it instead.");
    return argument;
  }
  std::string code = askSecret(context, "The account's authorisation code");
  if (code.empty()) throw Failure(kUsage, "no code was given.");
  if (const std::string mistake = checkCode(code); !mistake.empty()) throw Failure(kUsage, mistake + ".");
  return code;
}

void linkNest(const Context& context, const std::string& argument) {
  // The code is a secret, which nothing on the screen shows.
  const std::string code = codeOf(context, argument);
  const auto give = [code = std::string(code)](TembraAssociation& service) mutable { service.Nest_add(code.data()); };
  static_cast<void>(askServer(context, {SERVER_NEST, "Nest_add(code)", give, "Linking the Nest account", ""}, kLinked,
                              kNestRefusals));
  context.display.note("Linked the Nest account.");
}

void unlinkNest(const Context& context) {
  confirm(context, "The Nest account is no longer linked, and its devices leave the home.");
  const auto give = [](TembraAssociation& service) { service.Nest_remove(); };
  static_cast<void>(askServer(context, {SERVER_NEST, "Nest_remove()", give, "Unlinking the Nest account", ""},
                              kUnlinked, kNestRefusals));
  context.display.note("Unlinked the Nest account.");
}

void tellNestStatus(const Context& context) {
  const bool linked = serviceAs(context.options.role).Nest_checkExist() != 0;
  if (context.options.json) return printLine(jsonLine({{"linked", linked}}));
  printLine(linked ? "A Nest account is linked." : "No Nest account is linked.");
}

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
