#include "cli/command_line.h"

#include <sys/un.h>

#include <tembra/version.h>
#include <tembra/watch.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <string>
#include <vector>

#include "cli/words/roles.h"

namespace tembra::cli {
namespace {

constexpr void (*kCommands[])(CLI::App&, Action&) = {
    declareAdd,    declareRemove, declareCancel, declareReset, declareDevices,  declareDoctor, declareRecord,
    declareReport, declareWatch,  declareHue,    declareNest,  declareClassify, declareNames,
};

constexpr char kExitStatus[] =
    "Exit status: 0 done, 1 the operation failed, 2 wrong usage, 3 no connection, 130 interrupted.\n"
    "Ctrl-C cancels a running operation on both radios. What the Hue or the Nest server was told cannot be taken back.";

std::string versionText() {
  const int version = tembra_version();
  return "tembra-assoc " + std::to_string(version / 10000) + "." + std::to_string(version / 100 % 100) + "." +
         std::to_string(version % 100);
}

bool isOption(const std::string& word) { return word.starts_with('-'); }

// A request for help would hide a word that is none.
void requireCommands(const CLI::App& program, const std::vector<std::string>& words) {
  const CLI::App* command = &program;
  for (const std::string& word : words) {
    if (isOption(word)) continue;
    const auto within = command->get_subcommands([&word](const CLI::App* each) { return each->get_name() == word; });
    if (within.empty()) throw CLI::ValidationError("help", "there is no command " + word);
    command = within.front();
  }
}

std::string checkWatchPath(const std::string& path) {
  const bool isGood = path.starts_with('/') && path.size() < sizeof sockaddr_un::sun_path;
  return isGood ? "" : "\"" + path + "\" is no absolute path of at most 107 bytes";
}

}  // namespace

void declareCommandLine(CLI::App& program, Options& options, Action& action) {
  program.add_option("--role", options.role, "front end to appear as")
      ->check(CLI::IsMember(roleNames()))
      ->capture_default_str();
  program.add_option("--db", options.database, "device database, instead of the system's own");
  program.add_flag("--json", options.json, "one JSON object a line; questions are answered by lines of JSON");
  program.add_flag("--yes", options.yes, "ask nothing: confirm, take the proposed type, keep the proposed name");
  program.add_flag("--verbose", options.verbose, "every event with its numbers, and the library's log");
  program.add_option("--watch-path", options.watchPath, "socket where other processes watch and cancel")
      ->check(checkWatchPath)
      ->envname("TEMBRA_WATCH_PATH")
      ->default_val(TEMBRA_WATCH_PATH);
  program.set_version_flag("--version", versionText);
  program.add_flag("--timeline", options.timeline, "report for a timeline")->envname("TEMBRA_TIMELINE")->group("");
  program.footer(kExitStatus);
  program.require_subcommand(0, 1);
  program.fallthrough();
  for (const auto declare : kCommands) declare(program, action);
  program.add_subcommand("help", "the same as --help: help COMMAND");  // as readCommandLine takes it
}

void readCommandLine(CLI::App& program, int argc, char** argv) {
  std::vector<std::string> words(argv + 1, argv + std::max(argc, 1));
  const auto first = std::ranges::find_if_not(words, isOption);
  if (first != words.end() && *first == "help") {
    words.erase(first);
    requireCommands(program, words);
    words.emplace_back("--help");
  }
  std::ranges::reverse(words);  // which is how the parser takes them
  program.parse(std::move(words));
}

}  // namespace tembra::cli
