// A check of the doctor: a question about this router, and what looking brought.
#ifndef TEMBRA_CLI_DOCTOR_CHECK_H
#define TEMBRA_CLI_DOCTOR_CHECK_H

#include <string>
#include <utility>

namespace tembra::cli::doctor {

class Router;

enum class Status {
  kWell,
  kNote,    ///< worth knowing, or this user cannot look
  kFinding  ///< something is wrong
};

/// One sentence each. What is well needs neither a proof nor an advice, and a note may lack both.
struct Verdict {
  Status status = Status::kWell;
  std::string text;
  std::string proof;   ///< what was seen where
  std::string advice;  ///< what to do
};

inline Verdict well(std::string text) { return {Status::kWell, std::move(text), "", ""}; }
inline Verdict note(std::string text, std::string proof = "", std::string advice = "") {
  return {Status::kNote, std::move(text), std::move(proof), std::move(advice)};
}
inline Verdict finding(std::string text, std::string proof, std::string advice) {
  return {Status::kFinding, std::move(text), std::move(proof), std::move(advice)};
}

struct Check {
  const char* id;        ///< never changes: pages and programs refer to it
  const char* question;  ///< that a well router answers with yes, or with a fact
  Verdict (*look)(Router& router);
};

}  // namespace tembra::cli::doctor

#endif
