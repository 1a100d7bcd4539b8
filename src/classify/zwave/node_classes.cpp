// Z-Wave device classes: which device type a node of a generic and a specific class is, and what the log says of it.
#include "classify/zwave/node_classes.h"

#include <cstddef>

#include "support/log.h"

namespace tembra {
namespace {

// Command classes that tell apart nodes of the same device class (Z-Wave standard).
constexpr unsigned char kMultilevelSwitch = 0x26;
constexpr unsigned char kMeter = 0x32;
constexpr unsigned char kAlarm = 0x71;

constexpr short kAny = NodeClass::kAny;

#define P TEMBRA_LOG_PREFIX

// Class numbers are the Z-Wave standard's, the texts are ours. A generic class's rows stand together and end with the
// row for any other specific class; the last row is for any other generic class.
constexpr NodeClass kNodeClasses[] = {
    {0x00, kAny, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_No_Generic_Type , Specific:Unknown"},
    {0x01, 0, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Remote_Controller , Specific:RC_Unknown"},
    {0x01, 1, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Remote_Controller , Specific:RC_Portable_Remote_Controller"},
    {0x01, 2, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Remote_Controller , Specific:RC_Portable_Scene_Controller"},
    {0x01, 3, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Remote_Controller , Specific:RC_Portable_Installer_Tool"},
    {0x01, 4, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Remote_Controller , Specific:RC_Remote_Control_AV"},
    {0x01, 6, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Remote_Controller , Specific:RC_Remote_Control_Simple"},
    {0x01, kAny, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Remote_Controller , Specific:GenericDevice"},
    {0x02, 0, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Static_Controller_v2 , Specific:SC_Unknown"},
    {0x02, 1, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Static_Controller_v2 , Specific:SC_Static_PC_Controller"},
    {0x02, 2, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Static_Controller_v2 , Specific:SC_Static_Scene_Controller"},
    {0x02, 3, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Static_Controller_v2 , Specific:SC_Static_Installer_Tool"},
    {0x02, 4, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Static_Controller_v2 , SC_Set_Top_Box"},  // [sic]
    {0x02, 5, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Static_Controller_v2 , Specific:SC_Sub_System_Controller"},
    {0x02, 6, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Static_Controller_v2 , Specific:SC_TV"},
    {0x02, 7, DEVTYPE_GATEWAY, P "Generic:zw_Static_Controller_v2 , Specific:SC_Gateway"},
    {0x02, kAny, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Static_Controller_v2 , Specific:GenericDevice"},
    {0x03, 0, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_AV_Control_Point , Specific:AV_Unknown"},
    {0x03, 4, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_AV_Control_Point , Specific:AV_Satellite_Receiver"},
    {0x03, 17, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_AV_Control_Point , Specific:AV_Satellite_Receiver_V2"},
    {0x03, 18, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_AV_Control_Point , Specific:AV_Doorbell"},
    {0x03, kAny, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_AV_Control_Point , Specific:GenericDevice"},
    {0x04, 0, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Display , Specific:DT_Unknown"},
    {0x04, 1, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Display , Specific:DT_Simple_Display"},
    {0x04, kAny, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Display , Specific:GenericDevice"},
    {0x05, 0, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Network_Extender , Specific:NE_Unknown"},
    {0x05, 1, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Network_Extender , Specific:NE_Secure_Extender"},
    {0x05, kAny, DEVTYPE_GENERIC_DEVICE, P "Genericzw_Network_Extender , Specific:GenericDevice"},  // [sic]
    {0x06, 0, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Appliance , Specific:AT_Unknown"},
    {0x06, 1, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Appliance , Specific:AT_General_Appliance"},  // [sic]
    {0x06, 2, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Appliance , Specific:AT_General_Appliance"},  // [sic]
    {0x06, 3, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Appliance , Specific:AT_General_Appliance"},  // [sic]
    {0x06, kAny, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Appliance , Specific:GenericDevice"},
    {0x07, 1, DEVTYPE_NOTIFICATION_SENSOR, P "Generic:zw_Notification_Sensor , Specific:NS_Notification_Sensor"},
    {0x07, kAny, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Notification_Sensor , Specific:GenericDevice"},
    {0x08, 0, DEVTYPE_GENERAL_THERMOSTAT, P "Generic:zw_Thermostat , Specific:TT_Unknown"},
    {0x08, 1, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Thermostat , Specific:TT_Heating_Thermostat"},
    {0x08, 2, DEVTYPE_GENERAL_THERMOSTAT, P "Generic:zw_Thermostat , Specific:TT_General_Thermostat"},
    {0x08, 3, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Thermostat , Specific:TT_Setback_Schedule_Thermostat"},
    {0x08, 4, DEVTYPE_SETPOINT_THERMOSTAT, P "Generic:zw_Thermostat , Specific:TT_Setpoint_Thermostat"},
    {0x08, 5, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Thermostat , Specific:TT_Setback_Thermostat"},
    {0x08, 6, DEVTYPE_GENERAL_THERMOSTAT, P "Generic:zw_Thermostat , Specific:TT_General_Thermostat_V2"},
    {0x08, kAny, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Thermostat , Specific:GenericDevice"},
    {0x09, 0, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Window_Covering , Specific:WC_Unknown"},
    {0x09, 1, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Window_Covering , Specific:WC_Simple_Window_Covering"},
    {0x09, kAny, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Window_Covering , Specific:GenericDevice"},
    {0x0F, 0, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Repeater_Slave , Specific:RS_Unknown"},
    {0x0F, 1, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Repeater_Slave , Specific:RS_Basic_Repeater_Slave"},
    {0x0F, kAny, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Repeater_Slave , Specific:GenericDevice"},
    {0x10,
     0,
     DEVTYPE_OUTLET_SWITCH,
     P "Generic:zw_Binary_Switch , Specific:BS_Unknown",
     {kMeter},
     DEVTYPE_METER_SWITCH},
    {0x10,
     1,
     DEVTYPE_BINARY_SWITCH,
     P "Generic:zw_Binary_Switch , Specific:BS_Binary_Power_Switch",
     {kMeter},
     DEVTYPE_METER_SWITCH},
    {0x10, 2, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Binary_Switch , Specific:BS_Binary_Tunable_Color_Light"},
    {0x10, 3, DEVTYPE_BINARY_SWITCH, P "Generic:zw_Binary_Switch , Specific:BS_Binary_Scene_Switch"},
    {0x10, 4, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Binary_Switch , Specific:BS_Power_Strip"},
    {0x10, 5, DEVTYPE_SIREN, P "Generic:zw_Binary_Switch , Specific:BS_Siren"},
    {0x10, 6, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Binary_Switch , Specific:BS_Valve_Open_Close"},
    {0x10, kAny, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Binary_Switch , Specific:GenericDevice"},
    {0x11, 0, DEVTYPE_MULTILEVEL_SWITCH, "Generic:zw_Multilevel_Switch , Specific:MS_Unknown"},  // [sic]
    {0x11,
     1,
     DEVTYPE_MULTILEVEL_SWITCH,
     P "Generic:zw_Multilevel_Switch , Specific:MS_Multilevel_Power_Switch",
     {kAlarm, kMultilevelSwitch},
     DEVTYPE_GENERIC_DEVICE},
    {0x11, 3, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Multilevel_Switch , Specific:MS_Multiposition_Motor"},
    {0x11, 4, DEVTYPE_MULTILEVEL_SWITCH, P "Generic:zw_Multilevel_Switch , Specific:MS_Multilevel_Scene_Switch"},
    {0x11, 5, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Multilevel_Switch , Specific:MS_Motor_Control_Class_A"},
    {0x11, 6, DEVTYPE_MULTILEVEL_SWITCH, P "Generic:zw_Multilevel_Switch , Specific:MS_Motor_Control_Class_B"},
    {0x11, 7, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Multilevel_Switch , Specific:MS_Motor_Control_Class_C"},
    {0x11, kAny, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Multilevel_Switch , Specific:GenericDevice"},
    {0x12, 0, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Remote_Switch , Specific:RTS_Unknown"},  // [sic]
    {0x12, 1, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Remote_Switch , Specific:RST_Binary_Remote_Switch"},
    {0x12, 2, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Remote_Switch , Specific:RST_Multilevel_Remote_Switch"},
    {0x12, 3, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Remote_Switch , Specific:RST_Binary_Toggle_Remote_Switch"},
    {0x12, 4, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Remote_Switch , Specific:RST_Multilevel_Toggle_Remote_Switch"},
    {0x12, kAny, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Remote_Switch , Specific:GenericDevice"},
    {0x13, 0, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Toggle_Switch , Specific:TS_Unknown"},
    {0x13, 1, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Toggle_Switch , Specific:TS_Binary_Toggle_Switch"},
    {0x13, 2, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Toggle_Switch , Specific:TS_Multilevel_Toggle_Switch"},
    {0x13, kAny, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Toggle_Switch , Specific:GenericDevice"},
    {0x14, 0, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Z_IP_Gateway , Specific:ZIPG_Unknown"},
    {0x14, 1, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Z_IP_Gateway , Specific:ZIPG_Tunneling_Gateway"},
    {0x14, 2, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Z_IP_Gateway , Specific:ZIPG_Advanced_Gateway"},
    {0x14, kAny, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Z_IP_Gateway , Specific:GenericDevice"},
    {0x15, 0, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Z_IP_Node , Specific:ZIPN_Unknown"},
    {0x15, 1, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Z_IP_Node , Specific:ZIPN_Tunneling_Node"},
    {0x15, 2, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Z_IP_Node , Specific:ZIPN_Advanced_Node"},
    {0x15, kAny, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Z_IP_Node , Specific:GenericDevice"},
    {0x16, 0, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Ventilation , Specific:VT_Unknown"},
    {0x16, 1, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Ventilation , Specific:VT_Residential_Heat_Recovery_Ventilation"},
    {0x16, kAny, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Ventilation , Specific:GenericDevice"},
    {0x17, 0, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Security_Panel , Specific:SP_Unknown"},
    {0x17, 1, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Security_Panel , Specific:SP_Zoned_Security_Panel"},
    {0x17, kAny, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Security_Panel , Specific:GenericDevice"},
    {0x18, 0, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Wall_Controller , Specific:WCNT_Unknown"},
    {0x18, 1, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Wall_Controller , Specific:WCNT_Basic_Wall_Controller"},
    {0x18, kAny, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Wall_Controller , Specific:GenericDevice"},
    {0x20, 0, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Binary_Sensor , Specific:BSS_Unknown"},
    {0x20, 1, DEVTYPE_BINARY_SENSOR, P "Generic:zw_Binary_Sensor , Specific:BSS_Routing_Binary_Sensor"},
    {0x20, kAny, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Binary_Sensor , Specific:GenericDevice"},
    {0x21, 0, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Multilevel_Sensor , Specific:MSS_Unknown"},
    {0x21, 1, DEVTYPE_MULTILEVEL_SENSOR, P "Generic:zw_Multilevel_Sensor , Specific:MSS_Routing_Multilevel_Sensor"},
    {0x21, 2, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Multilevel_Sensor , Specific:MSS_Chimney_Fan"},
    {0x21, kAny, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Multilevel_Sensor , Specific:GenericDevice"},
    {0x30, 0, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Pulse_Meter , Specific:PM_Unknown"},
    {0x30, 1, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Pulse_Meter , Specific:PM_Meter"},
    {0x30, kAny, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Pulse_Meter , Specific:GenericDevice"},
    {0x31, 0, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Meter , Specific:MT_Unknown"},
    {0x31, 1, DEVTYPE_MULTILEVEL_SENSOR, P "Generic:zw_Meter , Specific:MT_Simple_Meter"},
    {0x31, 2, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Meter , Specific:MT_Adv_Energy_Control"},
    {0x31, 3, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Meter , Specific:MT_Whole_Home_Meter_Simple"},
    {0x31, kAny, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Meter , Specific:GenericDevice"},
    {0x40, 0, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Entry_Control , Specific:EC_Unknown"},
    {0x40, 1, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Entry_Control , Specific:EC_Door_Lock"},
    {0x40, 2, DEVTYPE_DOOR_LOCK, P "Generic:zw_Entry_Control , Specific:EC_Advanced_Door_Lock"},
    {0x40, 3, DEVTYPE_DOOR_LOCK, P "Generic:zw_Entry_Control , Specific:EC_Secure_Keypad_Door_Lock"},
    {0x40, 4, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Entry_Control , Specific:EC_Door_Lock_Keypad_Deadbolt"},
    {0x40, 7, DEVTYPE_GARAGE_DOOR_OPENER, P "Generic:zw_Entry_Control , Specific:EC_Garage_Door_Opener"},
    {0x40, kAny, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Entry_Control , Specific:GenericDevice"},
    {0x50, 0, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Semi_Interoperable , Specific:SI_Unknown"},
    {0x50, 1, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Semi_Interoperable , Specific:SI_Energy_Production"},
    {0x50, kAny, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Semi_Interoperable , Specific:GenericDevice"},
    {0xA1, 0, DEVTYPE_ALARM_SENSOR, P "Generic:zw_Alarm_Sensor , Specific:AS_Unknown"},
    {0xA1, 1, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Alarm_Sensor , Specific:AS_Basic_Routing_Alarm_Sensor"},
    {0xA1, 2, DEVTYPE_ALARM_SENSOR, P "Generic:zw_Alarm_Sensor , Specific:AS_Routing_Alarm_Sensor"},
    {0xA1, 3, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Alarm_Sensor , Specific:AS_Basic_Zensor_Alarm_Sensor"},
    {0xA1, 4, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Alarm_Sensor , Specific:AS_Zensor_Alarm_Sensor"},
    {0xA1, 5, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Alarm_Sensor , Specific:AS_Advanced_Zensor_Alarm_Sensor"},
    {0xA1, 6, DEVTYPE_UNKNOWN, P "Generic:zw_Alarm_Sensor , Specific:AS_Basic_Routing_Smoke_Sensor"},
    {0xA1, 7, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Alarm_Sensor , Specific:AS_Routing_Smoke_Sensor"},
    {0xA1, 8, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Alarm_Sensor , Specific:AS_Basic_Zensor_Smoke_Sensor"},
    {0xA1, 9, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Alarm_Sensor , Specific:AS_Zensor_Smoke_Sensor"},
    {0xA1, 10, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Alarm_Sensor , Specific:AS_Advanced_Zensor_Smoke_Sensor"},
    {0xA1, kAny, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Alarm_Sensor , Specific:GenericDevice"},
    {0xFF, kAny, DEVTYPE_GENERIC_DEVICE, P "Generic:zw_Non_Interoperable , Specific:GenericDevice"},
    {kAny, kAny, DEVTYPE_GENERIC_DEVICE, P "Generic:GenericDevice , Specific:GenericDevice"},
};

#undef P

// The first row that fits decides, so each generic class has to be closed by its row for any specific class.
constexpr bool inOrder() {
  bool open = false;
  short generic = -2;
  for (const NodeClass& row : kNodeClasses) {
    if (open && row.generic != generic) return false;
    if (!open && row.generic == generic) return false;
    generic = row.generic;
    open = row.specific != kAny;
  }
  return !open && generic == kAny;
}
static_assert(inOrder(), "every generic class ends with its row for any specific class, and the table for any generic");

}  // namespace

const NodeClass& findNodeClass(unsigned char generic, unsigned char specific) {
  const NodeClass* row = kNodeClasses;
  while (!row->covers(generic, specific)) ++row;
  return *row;
}

}  // namespace tembra
