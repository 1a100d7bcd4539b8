// tembra-assoc report: one file for whoever is to find out what is wrong on this router.
#include <fcntl.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
#include <nlohmann/json.hpp>

#include "cli/commands/commands.h"
#include "cli/dialogue/questions.h"
#include "cli/display/json_line.h"
#include "cli/display/terminal.h"
#include "cli/failure.h"
#include "cli/report/bundle.h"
#include "platform/descriptor.h"
#include "platform/printable.h"

namespace tembra::cli {
namespace {

struct ReportOptions {
  std::string file;
  report::Wanted wanted;
  bool listsOnly = false;
};

std::string defaultFile() {
  const std::time_t now = std::time(nullptr);
  char text[64] = {};
  std::tm local{};
  std::strftime(text, sizeof text, "tembra-report-%Y%m%d-%H%M%S.tar", localtime_r(&now, &local));
  return text;
}

// The log that the stand-in for the router's logger writes.
void addOwnLog(std::vector<std::string>& logs) {
  const char* const log = std::getenv("TEMBRA_LOG");
  if (log != nullptr && *log == '/' && access(log, R_OK) == 0) logs.emplace_back(log);
}

void tellParts(const Context& context, const std::vector<report::Part>& parts) {
  for (const report::Part& part : parts) {
    if (context.options.json) {
      printLine(jsonEvent("part", {{"name", part.name}, {"bytes", part.content.size()}, {"text", part.meaning}}));
    } else {
      printText(part.name + " (" + std::to_string(part.content.size()) + " bytes): " + part.meaning);
    }
  }
}

[[noreturn]] void refuse(const std::string& path, int error) {
  throw Failure(kFailed, printable(path) + " cannot be written (" + std::strerror(error) + ").");
}

// Never over a file that is there, and for this user's eyes only.
Descriptor createNew(const std::string& path) {
  Descriptor file(open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
  if (!file.valid()) refuse(path, errno);
  return file;
}

// Before the user waits and is asked.
void requireRoomFor(const std::string& path) {
  createNew(path);
  unlink(path.c_str());
}

void writeNew(const std::string& path, const std::string& bytes) {
  const Descriptor file = createNew(path);
  for (std::size_t done = 0; done < bytes.size();) {
    const ssize_t written = write(file.get(), bytes.data() + done, bytes.size() - done);
    if (written < 0 && errno != EINTR) {
      const int error = errno;
      unlink(path.c_str());
      refuse(path, error);
    }
    done += written > 0 ? static_cast<std::size_t>(written) : 0;
  }
}

// As the user sees them: the program may go into the database's folder later.
void makeAbsolute(ReportOptions& options) {
  if (options.file.empty()) options.file = defaultFile();
  options.file = std::filesystem::absolute(options.file);
  if (!options.wanted.recording.empty()) options.wanted.recording = std::filesystem::absolute(options.wanted.recording);
  for (std::string& log : options.wanted.logs) log = std::filesystem::absolute(log);
}

void makeReport(const Context& context, ReportOptions asked) {
  addOwnLog(asked.wanted.logs);
  const std::string& file = asked.file;
  if (!asked.listsOnly) requireRoomFor(file);
  const std::vector<report::Part> parts = report::makeBundle(context, asked.wanted);
  tellParts(context, parts);
  if (asked.listsOnly) return;
  if (context.options.mayAsk()) {
    confirm(context, "Write these parts to " + file + ", " +
                         (asked.wanted.withNames ? "with all names" : "with stand-ins for names") +
                         "? Nothing is sent.");
  }
  writeNew(file, report::tarOf(parts, std::time(nullptr)));
  if (context.options.json) return printLine(jsonEvent("written", {{"file", file}}));
  printText("Wrote " + printable(file) + ". Nothing was sent.");
}

}  // namespace

void declareReport(CLI::App& program, Action& action) {
  CLI::App* command =
      program.add_subcommand("report", "put what a developer needs to know into one file; sends nothing");
  auto options = std::make_shared<ReportOptions>();
  command->add_option("file", options->file, "the tar file to write; a name with the time when left out");
  command->add_option("--recording", options->wanted.recording, "a recording (pcapng) to put in")
      ->check(CLI::ExistingFile);
  command->add_option("--log", options->wanted.logs, "a log to put in; may be given several times")
      ->allow_extra_args(false)
      ->check(CLI::ExistingFile);
  command->add_flag("--with-names", options->wanted.withNames, "keep names, places, users, codes and MAC addresses");
  command->add_flag("--list", options->listsOnly, "only list what would be written");
  command->callback([&action, options] {
    makeAbsolute(*options);
    action = [options](const Context& context) { makeReport(context, *options); };
  });
}

}  // namespace tembra::cli
