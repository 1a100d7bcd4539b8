#include "devices.h"
#include "offsets.h"

namespace oracle {
namespace {

constexpr int kEndOfClasses = 255;
constexpr char kMatched[] = "libTembraAssoc:cmd matched";

const std::vector<ZwaveDevice> kZwaveDevices = {
    {.name = "metering plug",
     .classes = {0x25, 0x32},
     .generic = 0x10,
     .specific = 1,
     .values = {{0x25, 0, 1, 1}},
     .type = 45,
     .lines = {kMatched, "libTembraAssoc:Generic:zw_Binary_Switch , Specific:BS_Binary_Power_Switch"}},
    {.name = "switch",
     .classes = {0x25, 0x27},
     .generic = 0x10,
     .specific = 1,
     .type = 1,
     .lines = {"libTembraAssoc:Generic:zw_Binary_Switch , Specific:BS_Binary_Power_Switch"}},
    {.name = "outlet",
     .classes = {0x25},
     .generic = 0x10,
     .type = 44,
     .lines = {"libTembraAssoc:Generic:zw_Binary_Switch , Specific:BS_Unknown"}},
    {.name = "siren",
     .classes = {0x25, 0x80},
     .basic = 3,
     .generic = 0x10,
     .specific = 5,
     .type = 42,
     .lines = {"libTembraAssoc:Generic:zw_Binary_Switch , Specific:BS_Siren"}},
    {.name = "dimmer",
     .classes = {0x26, 0x27},
     .generic = 0x11,
     .specific = 1,
     .type = 2,
     .lines = {"libTembraAssoc:Generic:zw_Multilevel_Switch , Specific:MS_Multilevel_Power_Switch"}},
    {.name = "dimmer of no known kind",
     .classes = {0x26},
     .generic = 0x11,
     .type = 2,
     .lines = {"Generic:zw_Multilevel_Switch , Specific:MS_Unknown"}},
    {.name = "dimmer with alarms",
     .classes = {0x26, 0x71},
     .generic = 0x11,
     .specific = 1,
     .values = {{0x71, 2, 1, 9}, {0x71, 1, 1, 0}, {0x80, 0, 3, 50}},
     .type = 60,
     .lines = {kMatched, kMatched,
               "libTembraAssoc:Generic:zw_Multilevel_Switch , Specific:MS_Multilevel_Power_Switch"}},
    {.name = "gateway",
     .classes = {0x72},
     .basic = 2,
     .generic = 0x02,
     .specific = 7,
     .type = 8,
     .lines = {"libTembraAssoc:Generic:zw_Static_Controller_v2 , Specific:SC_Gateway"}},
    {.name = "door lock",
     .classes = {0x62, 0x63},
     .basic = 3,
     .generic = 0x40,
     .specific = 3,
     .type = 5,
     .lines = {"libTembraAssoc:Generic:zw_Entry_Control , Specific:EC_Secure_Keypad_Door_Lock"}},
    {.name = "notification sensor",
     .classes = {0x71},
     .generic = 0x07,
     .specific = 1,
     .type = 59,
     .lines = {"libTembraAssoc:Generic:zw_Notification_Sensor , Specific:NS_Notification_Sensor"}},
    {.name = "multilevel sensor",
     .classes = {0x31, 0x80},
     .generic = 0x21,
     .specific = 1,
     .values = {{0x31, 1, 1, 25}},
     .type = 35,
     .lines = {"libTembraAssoc:Generic:zw_Multilevel_Sensor , Specific:MSS_Routing_Multilevel_Sensor"}},
    {.name = "smoke sensor",
     .classes = {0x71},
     .generic = 0xA1,
     .specific = 6,
     .lines = {"libTembraAssoc:Generic:zw_Alarm_Sensor , Specific:AS_Basic_Routing_Smoke_Sensor"}},
    {.name = "thermostat of many values",
     .classes = {0x40, 0x42, 0x43, 0x44},
     .generic = 0x08,
     .specific = 1,
     .values = {{0x40, 0, 1, 35}, {0x42, 0, 1, 36}, {0x43, 1, 1, 37}, {0x43, 2, 1, 38}, {0x44, 0, 1, 39}},
     .type = 60,
     .lines = {"libTembraAssoc:Generic:zw_Thermostat , Specific:TT_Heating_Thermostat"}},
    {.name = "motor",
     .classes = {0x20, 0x26, 0x25},
     .generic = 0x11,
     .specific = 3,
     .values = {{0x20, 0, 1, 14}, {0x26, 0, 1, 17}, {0x26, 1, 1, 0}, {0x25, 0, 2, 1}},
     .type = 60,
     .lines = {"libTembraAssoc:Generic:zw_Multilevel_Switch , Specific:MS_Multiposition_Motor"}},
    {.name = "binary sensor of no known kind",
     .classes = {0x30, 0x80},
     .generic = 0x20,
     .values = {{0x30, 0, 1, 2}, {0x80, 0, 1, 50}},
     .type = 60,
     .lines = {"libTembraAssoc:Generic:zw_Binary_Sensor , Specific:BSS_Unknown"}},
    {.name = "button with a basic value",
     .classes = {0x20},
     .basic = 1,
     .generic = 0x18,
     .specific = 1,
     .values = {{0x20, 0, 1, 14}},
     .type = 60,
     .lines = {"libTembraAssoc:Generic:zw_Wall_Controller , Specific:WCNT_Basic_Wall_Controller"}},
    {.name = "repeater whose first value is unknown",
     .classes = {0x86, 0x25},
     .generic = 0x05,
     .specific = 9,
     .values = {{0x86, 0, 1, 0}, {0x25, 0, 1, 1}},
     .type = 60,
     .lines = {"libTembraAssoc:Genericzw_Network_Extender , Specific:GenericDevice"}},
    {.name = "stranger whose first values are unknown",
     .generic = 0x99,
     .specific = 1,
     .values = {{0x86, 0, 1, 0}, {0x72, 3, 1, 0}, {0x20, 0, 9, 14}},
     .type = 60,
     .lines = {"libTembraAssoc:Generic:GenericDevice , Specific:GenericDevice"}},
    {.name = "node without values",
     .type = 60,
     .lines = {"libTembraAssoc:Generic:zw_No_Generic_Type , Specific:Unknown"}},
    {.name = "node without a basic class", .classes = {0x25}, .basic = 0, .generic = 0x10, .specific = 1, .type = -1},
};

}  // namespace

const std::vector<ZwaveDevice>& zwaveDevices() { return kZwaveDevices; }

Record<1036> ZwaveDevice::block() const {
  Record<1036> block;
  std::size_t at = kNodeClasses;
  for (const int commandClass : classes) block.setByte(at++, commandClass);
  block.setByte(at, kEndOfClasses);
  block.setByte(kNodeBasic, basic);
  block.setByte(kNodeGeneric, generic);
  block.setByte(kNodeSpecific, specific);
  at = kNodeValues;
  for (const ZwaveValue& value : values) {
    block.setByte(at++, value.commandClass);
    block.setByte(at++, value.index);
    block.setByte(at++, value.instance);
  }
  return block;
}

const ZwaveDevice* find(const Record<1036>& block) {
  for (const ZwaveDevice& device : kZwaveDevices) {
    const Record<1036> known = device.block();
    const bool same = std::equal(block.bytes.begin() + kNodeClasses, block.bytes.begin() + kNodeKind,
                                 known.bytes.begin() + kNodeClasses);
    if (same) return &device;
  }
  return nullptr;
}

}  // namespace oracle
