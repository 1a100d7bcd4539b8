// tembra-assoc: adds and removes the devices of a home from a command line.
#include <fcntl.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>

#include "attention.h"
#include "command_line.h"
#include "database_file.h"
#include "failure.h"

namespace tembra::cli {
namespace {

void perform(const Options& options, const Action& action) {
  Attention attention;
  const std::unique_ptr<Display> display = makeDisplay(options);
  useDatabase(options.database);
  action(Context{options, attention, *display});
}

// Every way a command can end, as a status and at most one sentence.
int run(const Options& options, const Action& action) {
  try {
    perform(options, action);
    return kDone;
  } catch (const Interrupted&) {
    complain("interrupted.");
    return kInterrupted;
  } catch (const Failure& failure) {
    complain(failure.what());
    return failure.status();
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

int parseAndRun(int argc, char** argv) {
  CLI::App program{"Adds and removes the devices of a home."};
  Options options;
  Action action;
  declareCommandLine(program, options, action);
  try {
    program.parse(argc, argv);
  } catch (const CLI::ParseError& refusal) {
    return program.exit(refusal) == kDone ? kDone : kUsage;
  }
  if (action) return run(options, action);
  complain("a command is needed; --help tells which there are.");
  return kUsage;
}

}  // namespace
}  // namespace tembra::cli

int main(int argc, char** argv) {
  try {
    tembra::cli::occupyStandardStreams();
    return tembra::cli::parseAndRun(argc, argv);
  } catch (const std::exception& unexpected) {
    std::fprintf(stderr, "tembra-assoc: %s\n", unexpected.what());
    return tembra::cli::kFailed;
  }
}
