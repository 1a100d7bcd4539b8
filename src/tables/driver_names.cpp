// Names of the Z-Wave driver's enumerations.
#include <tembra/names.h>

#include <cstddef>
#include <iterator>

namespace tembra {
namespace {

constexpr const char* kOperationCodes[] = {
    "Code_None",
    "Code_ControllerCommandOperation",
    "Code_SetValueOperation",
    "Code_GetValueOperation",
    "Code_CancelCommandOperation",
    "Code_ResetCommandOperation",
    "Code_DisableNotificationOperation",
    "Code_EnableNotificationOperation",
    "Code_ControllerUpdateOperation",
    "Code_NotificationOperation",
    "Code_SetSwitchAllOn",
    "Code_SetSwitchAllOff",
    "Code_SendTestPackets",
    "Code_SetRxPowerUp",
    "Code_SetRxPowerDown",
    "Code_UpdateValueOperation",
};

constexpr const char* kControllerCommands[] = {
    "ControllerCommand_None",
    "ControllerCommand_AddDevice",
    "ControllerCommand_CreateNewPrimary",
    "ControllerCommand_ReceiveConfiguration",
    "ControllerCommand_RemoveDevice",
    "ControllerCommand_RemoveFailedNode",
    "ControllerCommand_HasNodeFailed",
    "ControllerCommand_ReplaceFailedNode",
    "ControllerCommand_TransferPrimaryRole",
    "ControllerCommand_RequestNetworkUpdate",
    "ControllerCommand_RequestNodeNeighborUpdate",
    "ControllerCommand_AssignReturnRoute",
    "ControllerCommand_DeleteAllReturnRoutes",
    "ControllerCommand_SendNodeInformation",
    "ControllerCommand_ReplicationSend",
    "ControllerCommand_CreateButton",
    "ControllerCommand_DeleteButton",
};

constexpr const char* kNotifications[] = {
    "Type_ValueAdded",
    "Type_ValueRemoved",
    "Type_ValueChanged",
    "Type_ValueRefreshed",
    "Type_Group",
    "Type_NodeNew",
    "Type_NodeAdded",
    "Type_NodeRemoved",
    "Type_NodeProtocolInfo",
    "Type_NodeNaming",
    "Type_NodeEvent",
    "Type_PollingDisabled",
    "Type_PollingEnabled",
    "Type_SceneEvent",
    "Type_CreateButton",
    "Type_DeleteButton",
    "Type_ButtonOn",
    "Type_ButtonOff",
    "Type_DriverReady",
    "Type_DriverFailed",
    "Type_DriverReset",
    "Type_EssentialNodeQueriesComplete",
    "Type_NodeQueriesComplete",
    "Type_AwakeNodesQueried",
    "Type_AllNodesQueriedSomeDead",
    "Type_AllNodesQueried",
    "Type_Notification",
};

constexpr const char* kControllerStates[] = {
    ": no command in progress.",
    ": starting controller command.",
    ": command was cancelled.",
    ": command returned an error: ",
    ": waiting for a user action.",
    ": device went to sleep.",
    ": communicating with the other device.",
    ": command has completed successfully.",
    ": command has failed.",
    ": the node is OK.",
    ": the node has failed.",
};

constexpr const char* kControllerErrors[] = {
    "None",
    "Button Not Found",
    "Node Not Found",
    "Not a Bridge",
    "Not Static Update Controller",
    "Not Secondary Controller",
    "Not Primary Controller",
    "Is Primary Controller",
    "Not Found",
    "Controller Busy",
    "Failed",
    "Disabled",
    "Overflow",
};

constexpr const char* kValueGenres[] = {
    "basic", "user", "config", "system", "count",
};

constexpr const char* kValueTypes[] = {
    "bool", "byte", "decimal", "int", "list", "schedule", "string", "short", "button", "raw",
};

// Row n names value n; a value outside the table, negative ones included, has the fallback.
template <std::size_t Rows>
const char* nameOf(const char* const (&names)[Rows], int value, const char* fallback) {
  return static_cast<unsigned>(value) < Rows ? names[value] : fallback;
}

static_assert(std::size(kOperationCodes) == ozw_Code_UpdateValueOperation + 1, "every value has its name");
static_assert(std::size(kControllerCommands) == ozw_ControllerCommand_DeleteButton + 1, "every value has its name");
static_assert(std::size(kNotifications) == ozw_Type_Notification + 1, "every value has its name");
static_assert(std::size(kControllerStates) == ozw_State_NodeFailed + 1, "every value has its name");
static_assert(std::size(kControllerErrors) == ozw_Error_Overflow + 1, "every value has its name");
static_assert(std::size(kValueGenres) == ozw_Genre_Count + 1, "every value has its name");
static_assert(std::size(kValueTypes) == ozw_ValueType_Raw + 1, "every value has its name");

}  // namespace
}  // namespace tembra

using namespace tembra;

const char* OperationCodeenumToString(ozw_OperationCode value) {
  return nameOf(kOperationCodes, value, "Unknown Operation");
}

const char* ControllerCommandenumToString(ozw_ControllerCommand value) {
  return nameOf(kControllerCommands, value, "Unknown ControllerCommand");
}

const char* NotificationenumToString(ozw_NotificationType value) {
  return nameOf(kNotifications, value, "Unknown Notification");
}

const char* controllerStateStr(ozw_ControllerState value) {
  return nameOf(kControllerStates, value, ": unknown respose.");  // [sic]
}

const char* controllerErrorStr(ozw_ControllerError value) { return nameOf(kControllerErrors, value, "Unknown error"); }

const char* enumValueGenreStr(ozw_ValueGenre value) { return nameOf(kValueGenres, value, "unknown"); }

const char* valueTypeStr(ozw_ValueType value) { return nameOf(kValueTypes, value, "unknown"); }
