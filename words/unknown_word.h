// What a command line has that a program does not know, in the program's own words.
#ifndef TEMBRA_WORDS_UNKNOWN_WORD_H
#define TEMBRA_WORDS_UNKNOWN_WORD_H

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace tembra::words {

/// "there is no command paint"; empty where the program knows every word. For a program whose parsing has failed.
inline std::string unknownWord(const CLI::App& program) {
  const std::vector<std::string> unknown = program.remaining(true);
  if (unknown.empty()) return "";
  if (unknown.front().starts_with('-')) return "there is no option " + unknown.front();
  const CLI::App* command = &program;
  while (!command->get_subcommands().empty()) command = command->get_subcommands().front();
  const bool hasCommands = !command->get_subcommands([](const CLI::App*) { return true; }).empty();
  return hasCommands ? "there is no command " + unknown.front() : "the word " + unknown.front() + " is not expected";
}

}  // namespace tembra::words

#endif
