// Why an operation ended or what is in its way, in sentences for people.
#ifndef TEMBRA_FRONTEND_REASONS_H
#define TEMBRA_FRONTEND_REASONS_H

#include <string>
#include <string_view>

namespace tembra::frontend {

struct Reason {
  int number;
  const char* name;
  const char*
      text;  ///< with {server}, {error}, {device}, {named}, {which}, {holder}, {why} and {phase} to be filled in
  const char* advice;  ///< likewise
};

// Null for a number that there is not.
[[nodiscard]] const Reason* findReason(int reason);
[[nodiscard]] const char* reasonName(int reason);

/// What is filled into the sentences of a reason.
struct Filling {
  int server = 0;
  int error = 0;
  int phase = 0;
  std::string device;  ///< name and number; empty: unknown
  std::string holder;  ///< who has the connection; empty: unknown
  std::string why;     ///< what is in the way; empty: unknown
};

[[nodiscard]] std::string filled(std::string_view sentence, const Filling& filling);

}  // namespace tembra::frontend

#endif
