// The fixed numbers of the association service: servers, commands, states, device types.
//
// Every enumeration has a fixed underlying type. So a number that no enumerator names, as `(reset_type)9`, is a defined
// value, and the library answers it with its "unknown" branch. Four of the numberings look alike and differ: see
// ServerType, ClientType, RecordKind and DeviceKind.
#ifndef TEMBRA_VOCABULARY_H
#define TEMBRA_VOCABULARY_H

/// Destination of TembraAssociation::sendToServers, and the source word of an AssocEvent.
enum ServerType : int {
  SERVER_ZIGBEE = 1,
  SERVER_ZWAVE = 2,
  SERVER_HUE = 3,
  SERVER_NEST = 4,
  SERVER_HA = 5,   ///< the home-automation server's association port
  SERVER_MESH = 6  ///< nothing is ever sent to it
};

/// Sender of a datagram as TembraAssociation::findClientType tells it. Not the numbering of ServerType.
enum ClientType : int {
  CLIENT_UNKNOWN = 0,
  CLIENT_ZWAVE = 1,
  CLIENT_ZIGBEE = 2,
  CLIENT_HA = 3,
  CLIENT_HUE = 4,
  CLIENT_NEST = 5,
  CLIENT_MESH = 6  ///< known to the receive loop, never a result of findClientType
};

/// Role of a front end, stored in TembraAssociation::clientRole by the role initialisers.
enum ClientRole : int {
  ROLE_WEB_SERVER = 1,  ///< its connection closes after every Hue or Nest answer
  ROLE_LCD = 2,
  ROLE_CLOUD_APPS = 3,
  ROLE_MESH_SERVER = 4,
  ROLE_FREE_USER_1 = 5,
  ROLE_FREE_USER_2 = 6
};

/// First word of an HA-server datagram: which record follows it.
enum RecordKind : int { RECORD_ZIGBEE = 0, RECORD_ZWAVE = 2 };

/// Device-kind word of a ZwNodeInfo (byte offset 600): which radio the pending device belongs to.
enum DeviceKind : int { DEVICE_NONE = 0, DEVICE_ZIGBEE = 1, DEVICE_ZWAVE = 2 };

/// Radio-kind word of a DeviceRecord (byte offset 400).
enum RadioKind : int { RADIO_ZWAVE = 2, RADIO_IP = 3 };

/// Node numbers of a ZwNodeInfo that name no node.
enum NodeNumber : unsigned char { NODE_NONE = 0, NODE_FAILED = 255 };

/// Request mark of a ZwNodeInfo (byte offset 972): what an HA notice announces.
enum RequestMark : unsigned char { MARK_REMOVED = 254, MARK_ADDED = 255 };

/// Message code of a received ZbDeviceInfo (byte offset 10): how far the ZigBee server has come. 2 means one thing
/// while adding and another while removing.
enum ZigbeeStatus : unsigned char {
  ZIGBEE_FOUND = 1,             ///< adding: a device was found
  ZIGBEE_ADD_FAILED = 2,        ///< adding: it failed
  ZIGBEE_REMOVED = 2,           ///< removing: a device left
  ZIGBEE_STILL_ADDING = 3,      ///< adding: the device is still being added
  ZIGBEE_GETTING_INFO = 6,      ///< adding: the device is being asked for its description
  ZIGBEE_INFO_COMPLETE = 10,    ///< adding: the description is complete
  ZIGBEE_ADD_FAILED_TOO = 11,   ///< adding: it failed
  ZIGBEE_REMOVED_UNKNOWN = 12,  ///< removing: a device left that nobody knows
};

/// Message code of a ZbDeviceInfo in an HA notice (byte offset 10).
enum ZigbeeNotice : unsigned char { ZIGBEE_NOTICE_REMOVED = 2, ZIGBEE_NOTICE_ADDED = 10 };

/// Command word of a HueCommand.
enum HueCommandCode : unsigned {
  HUE_ADD_BRIDGE = 100,
  HUE_ADD_BULB = 105,
  HUE_REFRESH = 106,
  HUE_REMOVE = 109,
  HUE_DISCOVER = 114,
};

/// Result type of a HueAnswer. 8 and 9 have the same JSON text, and no more is known of them.
enum HueResultType : int {
  HUE_BRIDGES_FOUND = 0,
  HUE_FAILED = 1,
  HUE_BRIDGE_ADDED = 2,
  HUE_NO_BRIDGE = 3,       ///< there is no bridge
  HUE_BUTTON = 4,          ///< the bridge's link button was not pressed
  HUE_UNKNOWN_BRIDGE = 5,  ///< there is no such bridge
  HUE_BULB_ADDED = 6,
  HUE_DONE = 8,
  HUE_DONE_2 = 9,
};

/// Command word of a NestCommand.
enum NestCommandCode : unsigned { NEST_LINK = 100, NEST_UNLINK = 109 };

/// Command word of a NestAnswer. No more is known of these numbers than which event each of them becomes.
enum NestAnswerCode : int {
  NEST_ANSWER_100 = 100,
  NEST_ANSWER_121 = 121,
  NEST_ANSWER_122 = 122,
  NEST_ANSWER_123 = 123,
  NEST_ANSWER_124 = 124,  ///< the status decides: 0 or -1
};

/// Commands of TembraAssociation::cmdToZigbee. Any other value sends nothing.
enum zigbee_cmd : int {
  zigbee_cmd_add = 1,     ///< open the network to joining devices
  zigbee_cmd_remove = 2,  ///< start removing
  zigbee_cmd_reset = 3,   ///< reset the network: two datagrams, 2 seconds apart
  zigbee_cmd_cancel = 4   ///< cancel adding or removing
};

/// Commands of TembraAssociation::cmdToZwave. Any other value sends nothing.
enum zwave_cmd : int {
  zwave_cmd_add = 1,
  zwave_cmd_remove = 2,
  zwave_cmd_reset = 3,  ///< reset the controller
  zwave_cmd_cancel = 4  ///< cancel the running controller command
};

/// Radios that a cancel goes to, and the values of TembraAssociation::cancelTarget (0: none).
enum cancel_type : int { cancel_zigbee = 1, cancel_zwave = 2, cancel_both = 3 };

/// What TembraAssociation::doResetFor resets.
enum reset_type : int {
  reset_zigbee = 1,
  reset_zwave = 2,
  reset_both = 3,
  reset_both_and_remove_all = 4  ///< both radios, and the HA server drops every device
};

/// Values of TembraAssociation::assocState. 7 is not assigned; 7 and every value above 8 act like ASSOC_IDLE.
enum AssocState : int {
  ASSOC_IDLE = 0,      ///< nothing expected from the Z-Wave server
  ASSOC = 1,           ///< an add was requested of both radios; waiting for either
  DEASSOC = 2,         ///< a remove was requested of both radios; waiting for either
  ASSOC_RESET = 3,     ///< a reset answer is expected; only a front end sets it
  ZW_ASSOC = 4,        ///< a Z-Wave node is joining; waiting for its identity
  ZW_ASSOC_QUERY = 5,  ///< waiting for the Z-Wave node's full information
  ZW_REMOVING = 6,     ///< Z-Wave removal started; waiting for the server's confirmation
  ZB_ADDED = 8         ///< a ZigBee device was created
};

/// The system-wide device type. The numbers belong to the router's device-type library, which also owns the names
/// (DevtypeEnumToStr, StrToDevType); these are the ones that the association service itself decides by.
enum DevType : int {
  DEVTYPE_UNKNOWN = 0,
  DEVTYPE_BINARY_SWITCH = 1,
  DEVTYPE_MULTILEVEL_SWITCH = 2,
  DEVTYPE_BINARY_SENSOR = 3,
  DEVTYPE_MULTILEVEL_SWITCH_ON_OFF = 4,
  DEVTYPE_DOOR_LOCK = 5,
  DEVTYPE_ALARM_SENSOR = 6,
  DEVTYPE_THERMOSTAT = 7,
  DEVTYPE_GATEWAY = 8,
  DEVTYPE_STANDARD_CIE = 10,
  DEVTYPE_MOTION_SENSOR = 11,
  DEVTYPE_CONTACT_SWITCH = 12,
  DEVTYPE_FIRE_SENSOR = 13,
  DEVTYPE_WATER_SENSOR = 14,
  DEVTYPE_GAS_SENSOR = 15,
  DEVTYPE_PERSONAL_EMERGENCY = 16,
  DEVTYPE_VIBRATION_SENSOR = 17,
  DEVTYPE_REMOTE_CONTROL = 18,
  DEVTYPE_KEY_FOB = 19,
  DEVTYPE_KEYPAD = 20,
  DEVTYPE_STANDARD_WARNING = 21,
  DEVTYPE_SMART_AC_SWITCH = 22,
  DEVTYPE_OCCUPANCY_SENSOR = 24,
  DEVTYPE_TEMPERATURE_SENSOR = 25,
  DEVTYPE_WINDOW_COVERING = 26,
  DEVTYPE_HUMIDITY_SENSOR = 27,
  DEVTYPE_ZIGBEE_DOOR_LOCK = 28,
  DEVTYPE_ZIGBEE_TEMP_SENSOR = 29,
  DEVTYPE_COLOR_DIMMABLE_LIGHT = 32,
  DEVTYPE_MULTILEVEL_SENSOR = 35,
  DEVTYPE_ZWAVE_SMOKE_SENSOR = 36,
  DEVTYPE_ZWAVE_LEAK_SENSOR = 37,
  DEVTYPE_ZWAVE_TILT_SENSOR = 38,
  DEVTYPE_ZWAVE_CONTACT_SENSOR = 39,
  DEVTYPE_LUMINANCE_SENSOR = 40,
  DEVTYPE_ZWAVE_MOTION_SENSOR = 41,
  DEVTYPE_SIREN = 42,
  DEVTYPE_MULTI_SWITCH = 43,
  DEVTYPE_OUTLET_SWITCH = 44,
  DEVTYPE_METER_SWITCH = 45,
  DEVTYPE_SETPOINT_THERMOSTAT = 46,
  DEVTYPE_GENERAL_THERMOSTAT = 47,
  DEVTYPE_MULTI_SENSOR = 49,
  DEVTYPE_TOBBLE_PLUG = 50,
  DEVTYPE_MOTOR_CONTROL = 52,
  DEVTYPE_GARAGE_DOOR_OPENER = 53,
  DEVTYPE_ZWAVE_AC_EXTENDER = 54,
  DEVTYPE_ZWAVE_DIMMER = 55,
  DEVTYPE_ENERGY_METER = 56,
  DEVTYPE_NOTIFICATION_SENSOR = 59,
  DEVTYPE_GENERIC_DEVICE = 60,  ///< the fallback of every classification
  DEVTYPE_DRAVOTEK_BUTTON = 61,
  DEVTYPE_ZEN_THERMOSTAT = 62,
  DEVTYPE_IR_EXTENDER = 65,
  DEVTYPE_ZIGBEE_CAM_IMAGE = 67
};

/// The meaning of one value slot of a device. The numbers are the system's; the names say what the association
/// service derives the slot from or rewrites it to. Slots of the same origin are counted in the order of their writing.
enum IndexType : int {
  INDEX_NONE = 0,  ///< undefined, and the end of a Z-Wave index table
  INDEX_SWITCH = 1,
  INDEX_BINARY_SENSOR = 2,
  INDEX_MOTION = 3,
  INDEX_CONTACT = 4,
  INDEX_VIBRATION = 5,
  INDEX_WATER = 6,
  INDEX_GAS = 7,
  INDEX_FIRE = 8,
  INDEX_ALARM = 9,
  INDEX_KEY_FOB_2 = 10,
  INDEX_KEY_FOB_3 = 11,
  INDEX_ZONE = 12,  ///< of every IAS zone
  INDEX_SIREN = 13,
  INDEX_BASIC = 14,
  INDEX_SMOKE = 15,
  INDEX_LEAK = 16,
  INDEX_LEVEL = 17,
  INDEX_ZIGBEE_LEVEL = 18,
  INDEX_DIMMER_LEVEL = 19,
  INDEX_MOTOR_LEVEL = 20,
  INDEX_DOOR_LOCK = 22,
  INDEX_ZIGBEE_DOOR_LOCK = 23,
  INDEX_KEY_FOB_1 = 24,
  INDEX_TEMPERATURE = 25,
  INDEX_PRESSURE = 26,
  INDEX_HUMIDITY = 27,
  INDEX_ILLUMINANCE = 28,
  INDEX_COLOR_1 = 31,
  INDEX_COLOR_2 = 32,
  INDEX_COLOR_3 = 33,
  INDEX_POWER = 34,
  INDEX_THERMOSTAT_MODE = 35,
  INDEX_THERMOSTAT_STATE = 36,
  INDEX_HEATING_SETPOINT = 37,
  INDEX_COOLING_SETPOINT = 38,
  INDEX_FAN_MODE = 39,
  INDEX_FAN_CONTROL_2 = 40,
  INDEX_MOTOR_BASIC = 42,
  INDEX_MOTOR_SWITCH = 43,
  INDEX_BARRIER = 44,
  INDEX_AC_EXTENDER_MODE = 45,
  INDEX_AC_EXTENDER_HEATING = 46,
  INDEX_AC_EXTENDER_COOLING = 47,
  INDEX_AC_EXTENDER_FAN = 48,
  INDEX_CONFIGURATION_27 = 49,
  INDEX_BATTERY = 50,
  INDEX_CONFIGURATION_33 = 51,
  INDEX_MEASUREMENT_2 = 52,
  INDEX_MEASUREMENT_3 = 53,
  INDEX_MEASUREMENT_4 = 54,
  INDEX_USER_CODE_COUNT = 79,
  INDEX_ENERGY = 80,
  INDEX_USER_CODE = 81,
  INDEX_MEASUREMENT_1 = 86,
  INDEX_BUTTON = 91,
  INDEX_METERING_1 = 108,
  INDEX_METERING_2 = 109,
  INDEX_METERING_3 = 110,
  INDEX_METERING_4 = 111,
  INDEX_WINDOW_COVERING = 116,
  INDEX_CENTRAL_SCENE = 117,
  INDEX_CAMERA_1 = 128,
  INDEX_CAMERA_2 = 129,
  INDEX_CAMERA_3 = 130,
  INDEX_CAMERA_4 = 131
};

// ---- Enumerations of the Z-Wave driver ------------------------------------------------------------------------------

/// Operation code of a Z-Wave command.
enum ozw_OperationCode : int {
  ozw_Code_None = 0,
  ozw_Code_ControllerCommandOperation,
  ozw_Code_SetValueOperation,
  ozw_Code_GetValueOperation,
  ozw_Code_CancelCommandOperation,
  ozw_Code_ResetCommandOperation,
  ozw_Code_DisableNotificationOperation,
  ozw_Code_EnableNotificationOperation,
  ozw_Code_ControllerUpdateOperation,
  ozw_Code_NotificationOperation,
  ozw_Code_SetSwitchAllOn,
  ozw_Code_SetSwitchAllOff,
  ozw_Code_SendTestPackets,
  ozw_Code_SetRxPowerUp,
  ozw_Code_SetRxPowerDown,
  ozw_Code_UpdateValueOperation
};

/// Controller command of a Z-Wave command.
enum ozw_ControllerCommand : int {
  ozw_ControllerCommand_None = 0,
  ozw_ControllerCommand_AddDevice,
  ozw_ControllerCommand_CreateNewPrimary,
  ozw_ControllerCommand_ReceiveConfiguration,
  ozw_ControllerCommand_RemoveDevice,
  ozw_ControllerCommand_RemoveFailedNode,
  ozw_ControllerCommand_HasNodeFailed,
  ozw_ControllerCommand_ReplaceFailedNode,
  ozw_ControllerCommand_TransferPrimaryRole,
  ozw_ControllerCommand_RequestNetworkUpdate,
  ozw_ControllerCommand_RequestNodeNeighborUpdate,
  ozw_ControllerCommand_AssignReturnRoute,
  ozw_ControllerCommand_DeleteAllReturnRoutes,
  ozw_ControllerCommand_SendNodeInformation,
  ozw_ControllerCommand_ReplicationSend,
  ozw_ControllerCommand_CreateButton,
  ozw_ControllerCommand_DeleteButton
};

/// What the driver notifies of.
enum ozw_NotificationType : int {
  ozw_Type_ValueAdded = 0,
  ozw_Type_ValueRemoved,
  ozw_Type_ValueChanged,
  ozw_Type_ValueRefreshed,
  ozw_Type_Group,
  ozw_Type_NodeNew,
  ozw_Type_NodeAdded,
  ozw_Type_NodeRemoved,
  ozw_Type_NodeProtocolInfo,
  ozw_Type_NodeNaming,
  ozw_Type_NodeEvent,
  ozw_Type_PollingDisabled,
  ozw_Type_PollingEnabled,
  ozw_Type_SceneEvent,
  ozw_Type_CreateButton,
  ozw_Type_DeleteButton,
  ozw_Type_ButtonOn,
  ozw_Type_ButtonOff,
  ozw_Type_DriverReady,
  ozw_Type_DriverFailed,
  ozw_Type_DriverReset,
  ozw_Type_EssentialNodeQueriesComplete,
  ozw_Type_NodeQueriesComplete,
  ozw_Type_AwakeNodesQueried,
  ozw_Type_AllNodesQueriedSomeDead,
  ozw_Type_AllNodesQueried,
  ozw_Type_Notification
};

/// How far a controller command has come.
enum ozw_ControllerState : int {
  ozw_State_NoCommand = 0,
  ozw_State_Starting,
  ozw_State_Cancelled,
  ozw_State_Error,
  ozw_State_WaitingForUser,
  ozw_State_Sleeping,
  ozw_State_Communicating,
  ozw_State_Completed,
  ozw_State_Failed,
  ozw_State_NodeOk,
  ozw_State_NodeFailed
};

/// Why a controller command failed.
enum ozw_ControllerError : int {
  ozw_Error_None = 0,
  ozw_Error_ButtonNotFound,
  ozw_Error_NodeNotFound,
  ozw_Error_NotBridge,
  ozw_Error_NotStaticUpdateController,
  ozw_Error_NotSecondary,
  ozw_Error_NotPrimary,
  ozw_Error_IsPrimary,
  ozw_Error_NotFound,
  ozw_Error_Busy,
  ozw_Error_Failed,
  ozw_Error_Disabled,
  ozw_Error_Overflow
};

/// What a node's value is for.
enum ozw_ValueGenre : int { ozw_Genre_Basic = 0, ozw_Genre_User, ozw_Genre_Config, ozw_Genre_System, ozw_Genre_Count };

/// What a node's value is made of.
enum ozw_ValueType : int {
  ozw_ValueType_Bool = 0,
  ozw_ValueType_Byte,
  ozw_ValueType_Decimal,
  ozw_ValueType_Int,
  ozw_ValueType_List,
  ozw_ValueType_Schedule,
  ozw_ValueType_String,
  ozw_ValueType_Short,
  ozw_ValueType_Button,
  ozw_ValueType_Raw
};

#endif
