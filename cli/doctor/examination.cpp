#include "cli/doctor/examination.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "cli/doctor/checks/checks.h"

namespace tembra::cli::doctor {
namespace {

const char* statusName(Status status) {
  switch (status) {
    case Status::kWell:
      return "well";
    case Status::kNote:
      return "note";
    default:
      return "finding";
  }
}

std::string textOf(const Examined& one) {
  const Verdict& verdict = one.verdict;
  std::string text = std::string(one.check->id) + ": " + verdict.text;
  if (!verdict.proof.empty()) text += "\n  Seen: " + verdict.proof;
  if (!verdict.advice.empty()) text += "\n  Do: " + verdict.advice;
  return text + "\n";
}

}  // namespace

std::vector<Examined> examine(Router& router, const std::vector<std::string>& left) {
  std::vector<Examined> all;
  for (const Check& check : allChecks()) {
    const bool isLeft = std::ranges::find(left, check.id) != left.end();
    const bool lacksProgram = check.look == checkProgramNames && router.program().empty();
    if (!isLeft && !lacksProgram) all.push_back({&check, check.look(router)});
  }
  return all;
}

std::size_t countOf(const std::vector<Examined>& all, Status status) {
  return static_cast<std::size_t>(
      std::ranges::count(all, status, [](const Examined& one) { return one.verdict.status; }));
}

std::string examinationText(const std::vector<Examined>& all, bool withWell) {
  std::string text;
  for (const Status status : {Status::kFinding, Status::kNote, Status::kWell}) {
    if (status == Status::kWell && !withWell) break;
    for (const Examined& one : all) {
      if (one.verdict.status == status) text += textOf(one);
    }
  }
  return text;
}

nlohmann::ordered_json examinedJson(const Examined& one) {
  using Json = nlohmann::ordered_json;
  const auto textOrNull = [](const std::string& text) { return text.empty() ? Json() : Json(text); };
  return {{"id", one.check->id},
          {"status", statusName(one.verdict.status)},
          {"question", one.check->question},
          {"text", one.verdict.text},
          {"proof", textOrNull(one.verdict.proof)},
          {"advice", textOrNull(one.verdict.advice)}};
}

}  // namespace tembra::cli::doctor
