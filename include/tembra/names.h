// Display texts of Z-Wave command classes and of the Z-Wave driver's enumerations.
//
// Every function returns a constant text that is never null and not to be freed; any thread may call any of them.
#ifndef TEMBRA_NAMES_H
#define TEMBRA_NAMES_H

#include <tembra/export.h>
#include <tembra/vocabulary.h>

/// Name of a Z-Wave command class (numbers of the Z-Wave standard), "NO OPERATION" for a number without a name.
TEMBRA_API const char* cclassStr(unsigned char cc);

/// Number of a command class's name (exact, case-sensitive): 0 for "NO OPERATION", 255 for a name that is not known,
/// which "BARRIER_OPERATOR" is not, either.
TEMBRA_API unsigned int cclassNum(const char* name);

/// Name of an operation code; "Unknown Operation" for any other value.
TEMBRA_API const char* OperationCodeenumToString(ozw_OperationCode value);

/// Name of a controller command; "Unknown ControllerCommand" for any other value.
TEMBRA_API const char* ControllerCommandenumToString(ozw_ControllerCommand value);

/// Name of a notification type; "Unknown Notification" for any other value.
TEMBRA_API const char* NotificationenumToString(ozw_NotificationType value);

/// Name of a controller state; the text begins with a colon and a blank, to follow a prefix in a log line; ": unknown
/// respose." for any other value.
TEMBRA_API const char* controllerStateStr(ozw_ControllerState value);

/// Name of a controller error; "Unknown error" for any other value.
TEMBRA_API const char* controllerErrorStr(ozw_ControllerError value);

/// Name of a value genre; "unknown" for any other value.
TEMBRA_API const char* enumValueGenreStr(ozw_ValueGenre value);

/// Name of a value type; "unknown" for any other value.
TEMBRA_API const char* valueTypeStr(ozw_ValueType value);

#endif
