// Names of the Z-Wave driver's enumerations.
#include <gtest/gtest.h>
#include <tembra/names.h>

#include <climits>
#include <string>
#include <vector>

#include "kit/memory.h"

namespace {

struct Enumeration {
  const char* function;
  const char* (*nameOf)(int value);
  std::vector<const char*> names;  // of the values 0, 1, ...
  const char* fallback;            // of every other value
};

// Each function takes a type of its own.
template <typename Value, const char* (*Name)(Value)>
const char* nameOf(int value) {
  return Name(static_cast<Value>(value));
}

const Enumeration kEnumerations[] = {
    {"OperationCodeenumToString",
     &nameOf<ozw_OperationCode, OperationCodeenumToString>,
     {"Code_None", "Code_ControllerCommandOperation", "Code_SetValueOperation", "Code_GetValueOperation",
      "Code_CancelCommandOperation", "Code_ResetCommandOperation", "Code_DisableNotificationOperation",
      "Code_EnableNotificationOperation", "Code_ControllerUpdateOperation", "Code_NotificationOperation",
      "Code_SetSwitchAllOn", "Code_SetSwitchAllOff", "Code_SendTestPackets", "Code_SetRxPowerUp", "Code_SetRxPowerDown",
      "Code_UpdateValueOperation"},
     "Unknown Operation"},
    {"ControllerCommandenumToString",
     &nameOf<ozw_ControllerCommand, ControllerCommandenumToString>,
     {"ControllerCommand_None", "ControllerCommand_AddDevice", "ControllerCommand_CreateNewPrimary",
      "ControllerCommand_ReceiveConfiguration", "ControllerCommand_RemoveDevice", "ControllerCommand_RemoveFailedNode",
      "ControllerCommand_HasNodeFailed", "ControllerCommand_ReplaceFailedNode", "ControllerCommand_TransferPrimaryRole",
      "ControllerCommand_RequestNetworkUpdate", "ControllerCommand_RequestNodeNeighborUpdate",
      "ControllerCommand_AssignReturnRoute", "ControllerCommand_DeleteAllReturnRoutes",
      "ControllerCommand_SendNodeInformation", "ControllerCommand_ReplicationSend", "ControllerCommand_CreateButton",
      "ControllerCommand_DeleteButton"},
     "Unknown ControllerCommand"},
    {"NotificationenumToString",
     &nameOf<ozw_NotificationType, NotificationenumToString>,
     {"Type_ValueAdded",
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
      "Type_Notification"},
     "Unknown Notification"},
    {"controllerStateStr",
     &nameOf<ozw_ControllerState, controllerStateStr>,
     {": no command in progress.", ": starting controller command.", ": command was cancelled.",
      ": command returned an error: ", ": waiting for a user action.", ": device went to sleep.",
      ": communicating with the other device.", ": command has completed successfully.", ": command has failed.",
      ": the node is OK.", ": the node has failed."},
     ": unknown respose."},
    {"controllerErrorStr",
     &nameOf<ozw_ControllerError, controllerErrorStr>,
     {"None", "Button Not Found", "Node Not Found", "Not a Bridge", "Not Static Update Controller",
      "Not Secondary Controller", "Not Primary Controller", "Is Primary Controller", "Not Found", "Controller Busy",
      "Failed", "Disabled", "Overflow"},
     "Unknown error"},
    {"enumValueGenreStr",
     &nameOf<ozw_ValueGenre, enumValueGenreStr>,
     {"basic", "user", "config", "system", "count"},
     "unknown"},
    {"valueTypeStr",
     &nameOf<ozw_ValueType, valueTypeStr>,
     {"bool", "byte", "decimal", "int", "list", "schedule", "string", "short", "button", "raw"},
     "unknown"},
};
constexpr std::size_t kValueCounts[] = {16, 17, 27, 11, 13, 5, 10};

}  // namespace

TEST(DriverNamesTest, EveryValue) {
  const std::size_t* count = kValueCounts;
  for (const Enumeration& enumeration : kEnumerations) {
    EXPECT_EQ(enumeration.names.size(), *count++) << enumeration.function;
    int value = 0;
    for (const char* name : enumeration.names) {
      EXPECT_STREQ(enumeration.nameOf(value), name) << enumeration.function << " " << value;
      ++value;
    }
  }
  EXPECT_EQ(count, std::end(kValueCounts));
}

TEST(DriverNamesTest, EveryOtherValueHasTheFallback) {
  for (const Enumeration& enumeration : kEnumerations) {
    const int behind = static_cast<int>(enumeration.names.size());
    for (const int value :
         {-1,         behind,     behind + 1, 100,   127,     128,         255,     256,         1000,
          65536,      -2,         -256,       -1000, INT_MAX, INT_MAX - 1, INT_MIN, INT_MIN + 1, INT_MIN + behind,
          0x10000000, 0x20000000, 0x40000000}) {
      EXPECT_STREQ(enumeration.nameOf(value), enumeration.fallback) << enumeration.function << " " << value;
    }
  }
}

TEST(DriverNamesTest, NothingIsAllocatedAndATextIsAlwaysTheSame) {
  const kit::AllocationCount allocations;
  bool same = true;
  for (const Enumeration& enumeration : kEnumerations) {
    for (int value = -1; value < 40; ++value) same = same && enumeration.nameOf(value) == enumeration.nameOf(value);
  }
  EXPECT_TRUE(same);
  EXPECT_EQ(allocations.value(), 0U);
}
