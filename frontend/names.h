// The kit's numbers in words: names for programs, sentences for people.
#ifndef TEMBRA_FRONTEND_NAMES_H
#define TEMBRA_FRONTEND_NAMES_H

#include <string>
#include <string_view>

namespace tembra::frontend {

// Null for a number that there is not.
[[nodiscard]] const char* operationName(int operation);
[[nodiscard]] const char* eventKindName(int kind);
[[nodiscard]] const char* phaseName(int phase);
[[nodiscard]] const char* outcomeName(int outcome);
[[nodiscard]] const char* reasonName(int reason);
[[nodiscard]] const char* serverName(int server);  ///< "ZigBee", ...

struct Reason {
  int number;
  const char* name;
  const char* text;    ///< with {server}, {error}, {device}, {named}, {holder}, {why} and {phase} to be filled in
  const char* advice;  ///< likewise
};

[[nodiscard]] const Reason* findReason(int reason);

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

/// The name of a device type, from the router's device-type library; empty when it has none.
[[nodiscard]] std::string typeName(int type);

}  // namespace tembra::frontend

#endif
