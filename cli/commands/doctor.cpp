// tembra-assoc doctor: what is wrong on this router, and what to do.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <filesystem>
#include <memory>
#include <nlohmann/json.hpp>

#include "cli/commands/commands.h"
#include "cli/display/json_line.h"
#include "cli/display/terminal.h"
#include "cli/doctor/checks/checks.h"
#include "cli/doctor/examination.h"
#include "cli/failure.h"

namespace tembra::cli {
namespace {

struct DoctorOptions {
  std::string program;
  std::vector<std::string> skipped;
};

void tellWhatIsWell(const std::vector<doctor::Examined>& all, bool isVerbose) {
  const std::size_t count = doctor::countOf(all, doctor::Status::kWell);
  if (!isVerbose) printText(doctor::counted(count, "check") + " found nothing wrong. --verbose lists them.");
}

void callDoctor(const Context& context, const DoctorOptions& asked) {
  doctor::Router router(context, asked.program);
  const std::vector<doctor::Examined> all = doctor::examine(router, asked.skipped);
  const std::size_t findings = doctor::countOf(all, doctor::Status::kFinding);
  if (context.options.json) {
    for (const doctor::Examined& one : all) printLine(jsonEvent("check", doctor::examinedJson(one)));
  } else {
    const std::string text = doctor::examinationText(all, context.options.verbose);
    if (!text.empty()) printText(text.substr(0, text.size() - 1));
    tellWhatIsWell(all, context.options.verbose);
  }
  if (findings == 0) return;
  throw Failure(kFailed, doctor::counted(findings, "check") + " found something wrong.", Failure::Told::kByEvent);
}

std::string faultOfId(const std::string& id) {
  const auto isCalledSo = [&id](const doctor::Check& check) { return check.id == id; };
  return std::ranges::any_of(doctor::allChecks(), isCalledSo) ? "" : "there is no check " + id;
}

// The ids in the footer, where a narrow terminal wraps them.
std::string footer() {
  std::string text = "The checks:";
  for (const doctor::Check& check : doctor::allChecks()) text += std::string(" ") + check.id;
  return text + "\nExit status: 0 nothing wrong was found, 1 something was, 2 wrong usage, 130 interrupted.";
}

}  // namespace

void declareDoctor(CLI::App& program, Action& action) {
  CLI::App* command = program.add_subcommand("doctor", "say what is wrong on this router, and what to do");
  auto options = std::make_shared<DoctorOptions>();
  command->add_option("--skip", options->skipped, "a check to leave out, by its id; may be given several times")
      ->allow_extra_args(false)
      ->type_name("ID")
      ->check(faultOfId);
  command->add_option("--program", options->program, "look also at a front end's program")->check(CLI::ExistingFile);
  command->footer(footer());
  command->callback([&action, options] {
    // The program may go into the database's folder later.
    if (!options->program.empty()) options->program = std::filesystem::absolute(options->program);
    action = [options](const Context& context) { callDoctor(context, *options); };
  });
}

}  // namespace tembra::cli
