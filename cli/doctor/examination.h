// What the doctor found, for people and for programs.
#ifndef TEMBRA_CLI_DOCTOR_EXAMINATION_H
#define TEMBRA_CLI_DOCTOR_EXAMINATION_H

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

#include "cli/doctor/checks/check.h"
#include "cli/doctor/facts/router.h"

namespace tembra::cli::doctor {

struct Examined {
  const Check* check;
  Verdict verdict;
};

/// Every check but those with an id in `left`; that of a program only when the router has one. Throws Interrupted.
[[nodiscard]] std::vector<Examined> examine(Router& router, const std::vector<std::string>& left);

[[nodiscard]] std::size_t countOf(const std::vector<Examined>& all, Status status);

/// Findings, then notes, then (when asked for) what is well.
[[nodiscard]] std::string examinationText(const std::vector<Examined>& all, bool withWell);

/// The members of its event `check`.
[[nodiscard]] nlohmann::ordered_json examinedJson(const Examined& one);

}  // namespace tembra::cli::doctor

#endif
