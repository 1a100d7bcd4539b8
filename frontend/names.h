// The names of the kit's numbers, for programs.
#ifndef TEMBRA_FRONTEND_NAMES_H
#define TEMBRA_FRONTEND_NAMES_H

#include <string>

namespace tembra::frontend {

// Null for a number that there is not.
[[nodiscard]] const char* operationName(int operation);
[[nodiscard]] const char* eventKindName(int kind);
[[nodiscard]] const char* phaseName(int phase);
[[nodiscard]] const char* outcomeName(int outcome);
[[nodiscard]] const char* serverName(int server);  ///< "ZigBee", ...

/// The name of a device type, from the router's device-type library; empty when it has none.
[[nodiscard]] std::string typeName(int type);

}  // namespace tembra::frontend

#endif
