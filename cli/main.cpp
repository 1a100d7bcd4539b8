// tembra-assoc: adds and removes the devices of a home from a command line.
#include <fcntl.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <iostream>
#include <sstream>

#include "cli/command_line.h"
#include "cli/commands/database_file.h"
#include "cli/dialogue/attention.h"
#include "cli/dialogue/dialogue.h"
#include "cli/display/terminal.h"
#include "cli/failure.h"
#include "cli/words/texts.h"
#include "words/unknown_word.h"

namespace tembra::cli {
namespace {

// Every way a command can end, as a status and at most one sentence.
int perform(const Options& options, const Action& action, Display& display) {
  Attention attention;
  try {
    useDatabase(options.database);
    action(Context{options, attention, display});
    return kDone;
  } catch (const Interrupted&) {
    display.failed(Failure(kInterrupted, "interrupted."));
    return kInterrupted;
  } catch (const Failure& failure) {
    display.failed(failure);
    return failure.status();
  }
}

int run(const Options& options, const Action& action) {
  const std::unique_ptr<Display> display = makeDisplay(options);
  try {
    const int status = perform(options, action, *display);
    display->ended(status);
    return status;
  } catch (const Failure& unwritten) {
    complain(unwritten.what());
    return unwritten.status();
  }
}

// A file that is opened while a standard stream is closed would take its place.
void occupyStandardStreams() {
  int descriptor = 0;
  do {
    descriptor = open("/dev/null", O_RDWR);
  } while (descriptor >= 0 && descriptor <= STDERR_FILENO);
  if (descriptor >= 0) close(descriptor);
}

// As any other failure, also for programs.
int refuse(const Options& options, const std::string& why) {
  const std::unique_ptr<Display> display = makeDisplay(options);
  display->failed(Failure(kUsage, why));
  display->ended(kUsage);
  return kUsage;
}

// The version as well.
int help(const CLI::App& program, const CLI::ParseError& request) {
  std::ostringstream text;
  program.exit(request, text, text);
  if (!text.str().empty()) printText(withoutBlanksAround(text.str()));
  return kDone;
}

bool asksForJson(int argc, char** argv) {
  return std::any_of(argv, argv + argc, [](const char* argument) { return std::strcmp(argument, "--json") == 0; });
}

// At a terminal people read sentences: what the library writes there would stand among them.
void quietLibrary(const Options& options) {
  constexpr int kUnlessSet = 0;
  if (isatty(STDERR_FILENO) != 1 || options.verbose) return;
  setenv("TEMBRA_LOG", "off", kUnlessSet);
  keepStandardErrorForComplaints();
}

int parseAndRun(int argc, char** argv) {
  CLI::App program{"Adds and removes the devices of a home.", "tembra-assoc"};
  Options options;
  Action action;
  declareCommandLine(program, options, action);
  try {
    readCommandLine(program, argc, argv);
  } catch (const CLI::ParseError& refusal) {
    if (refusal.get_exit_code() == kDone) return help(program, refusal);
    options.json = asksForJson(argc, argv);
    const std::string unknown = words::unknownWord(program);
    return refuse(options, (unknown.empty() ? refusal.what() : unknown) + " (--help tells what is possible)");
  }
  if (!action) {
    const auto given = program.get_subcommands();
    const std::string which = given.empty() ? "" : given.front()->get_name() + ": ";
    return refuse(options, which + "a command is needed; --help tells which there are.");
  }
  quietLibrary(options);
  return run(options, action);
}

}  // namespace
}  // namespace tembra::cli

int main(int argc, char** argv) {
  try {
    tembra::cli::occupyStandardStreams();
    const int status = tembra::cli::parseAndRun(argc, argv);
    std::cout.flush();
    if (tembra::cli::Dialogue::leavesCallBehind()) std::_Exit(status);
    return status;
  } catch (const std::exception& unexpected) {
    tembra::cli::complain(unexpected.what());
    return tembra::cli::kFailed;
  }
}
