// Stand-in for the router's device-type library: a name for every number, and back.
#include <tembra/platform.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <string>
#include <string_view>

namespace {

struct TypeName {
  DevType type;
  std::string_view name;
};

// The association service decides nothing by it: only the HA server gives it to the bulbs of a Hue bridge.
constexpr DevType kHueLamp{66};

constexpr std::array kTypeNames = {
    TypeName{DEVTYPE_UNKNOWN, "UnknownDevice"},
    TypeName{DEVTYPE_BINARY_SWITCH, "BinarySwitch"},
    TypeName{DEVTYPE_MULTILEVEL_SWITCH, "MultilevelSwitch"},
    TypeName{DEVTYPE_BINARY_SENSOR, "BinarySensor"},
    TypeName{DEVTYPE_MULTILEVEL_SWITCH_ON_OFF, "MultilevelSwitchOnOff"},
    TypeName{DEVTYPE_DOOR_LOCK, "DoorLock"},
    TypeName{DEVTYPE_ALARM_SENSOR, "AlarmSensor"},
    TypeName{DEVTYPE_THERMOSTAT, "Thermostat"},
    TypeName{DEVTYPE_GATEWAY, "Gateway"},
    TypeName{DEVTYPE_STANDARD_CIE, "StandardCIE"},
    TypeName{DEVTYPE_MOTION_SENSOR, "MotionSensor"},
    TypeName{DEVTYPE_CONTACT_SWITCH, "ContactSwitch"},
    TypeName{DEVTYPE_FIRE_SENSOR, "FireSensor"},
    TypeName{DEVTYPE_WATER_SENSOR, "WaterSensor"},
    TypeName{DEVTYPE_GAS_SENSOR, "GasSensor"},
    TypeName{DEVTYPE_PERSONAL_EMERGENCY, "PersonalEmergencyDevice"},
    TypeName{DEVTYPE_VIBRATION_SENSOR, "VibrationOrMovementSensor"},
    TypeName{DEVTYPE_REMOTE_CONTROL, "RemoteControl"},
    TypeName{DEVTYPE_KEY_FOB, "KeyFob"},
    TypeName{DEVTYPE_KEYPAD, "Keypad"},
    TypeName{DEVTYPE_STANDARD_WARNING, "StandardWarningDevice"},
    TypeName{DEVTYPE_SMART_AC_SWITCH, "SmartACSwitch"},
    TypeName{DEVTYPE_OCCUPANCY_SENSOR, "OccupancySensor"},
    TypeName{DEVTYPE_TEMPERATURE_SENSOR, "TemperatureSensor"},
    TypeName{DEVTYPE_WINDOW_COVERING, "Window Covering"},
    TypeName{DEVTYPE_HUMIDITY_SENSOR, "HumiditySensor"},
    TypeName{DEVTYPE_ZIGBEE_DOOR_LOCK, "ZigbeeDoorLock"},
    TypeName{DEVTYPE_ZIGBEE_TEMP_SENSOR, "ZigbeeTempSensor"},
    TypeName{DEVTYPE_COLOR_DIMMABLE_LIGHT, "ColorDimmableLight"},
    TypeName{DEVTYPE_MULTILEVEL_SENSOR, "MultilevelSensor"},
    TypeName{DEVTYPE_ZWAVE_SMOKE_SENSOR, "ZwaveSmokeSensor"},
    TypeName{DEVTYPE_ZWAVE_LEAK_SENSOR, "ZwaveLeakSensor"},
    TypeName{DEVTYPE_ZWAVE_TILT_SENSOR, "ZwaveTiltSensor"},
    TypeName{DEVTYPE_ZWAVE_CONTACT_SENSOR, "ZwaveContactSensor"},
    TypeName{DEVTYPE_LUMINANCE_SENSOR, "LuminanceSensor"},
    TypeName{DEVTYPE_ZWAVE_MOTION_SENSOR, "ZwaveMotionSensor"},
    TypeName{DEVTYPE_SIREN, "Siren"},
    TypeName{DEVTYPE_MULTI_SWITCH, "MultiSwitch"},
    TypeName{DEVTYPE_OUTLET_SWITCH, "OutletSwitch"},
    TypeName{DEVTYPE_METER_SWITCH, "MeterSwitch"},
    TypeName{DEVTYPE_SETPOINT_THERMOSTAT, "SetpointThermostat"},
    TypeName{DEVTYPE_GENERAL_THERMOSTAT, "GeneralThermostat"},
    TypeName{DEVTYPE_MULTI_SENSOR, "MultiSensor"},
    TypeName{DEVTYPE_TOBBLE_PLUG, "Tobble Plug"},
    TypeName{DEVTYPE_MOTOR_CONTROL, "MotorControl"},
    TypeName{DEVTYPE_GARAGE_DOOR_OPENER, "GarageDoorOpener"},
    TypeName{DEVTYPE_ZWAVE_AC_EXTENDER, "ZwaveACExtender"},
    TypeName{DEVTYPE_ZWAVE_DIMMER, "ZwaveDimmer"},
    TypeName{DEVTYPE_ENERGY_METER, "EnergyMeter"},
    TypeName{DEVTYPE_NOTIFICATION_SENSOR, "NotificationSensor"},
    TypeName{DEVTYPE_GENERIC_DEVICE, "GenericDevice"},
    TypeName{DEVTYPE_DRAVOTEK_BUTTON, "DravotekButton"},
    TypeName{DEVTYPE_ZEN_THERMOSTAT, "Zen Thermostat"},
    TypeName{DEVTYPE_IR_EXTENDER, "IR Extender"},
    TypeName{kHueLamp, "HueLamp"},
    TypeName{DEVTYPE_ZIGBEE_CAM_IMAGE, "ZigbeeCamImage"},
};

// A number without a row is "DevType" and the number, so that every number has one name and every name one number.
constexpr std::string_view kNumberedName = "DevType";

// With " #", an id of four digits and the NUL a name still fits the 32 bytes of a ZigBee record.
constexpr std::size_t kLongestName = 25;

constexpr bool isSound(const TypeName& row) {
  return !row.name.empty() && row.name.size() <= kLongestName &&
         row.name.substr(0, kNumberedName.size()) != kNumberedName;
}

constexpr bool isBefore(const TypeName& left, const TypeName& right) { return left.type < right.type; }

constexpr bool isSoundAndSorted() {
  const TypeName* before = nullptr;
  for (const TypeName& row : kTypeNames) {
    if (!isSound(row) || (before != nullptr && !isBefore(*before, row))) return false;
    before = &row;
  }
  return true;
}
static_assert(isSoundAndSorted());

std::string nameOf(DevType type) {
  const auto* row = std::lower_bound(kTypeNames.begin(), kTypeNames.end(), TypeName{type, {}}, isBefore);
  if (row != kTypeNames.end() && row->type == type) return std::string(row->name);
  return std::string(kNumberedName) + std::to_string(type);
}

// "DevType09" and "DevType1" are nobody's names: only the text that the number itself is written as reads back.
DevType readNumberedName(std::string_view name) {
  if (name.substr(0, kNumberedName.size()) != kNumberedName) return DEVTYPE_UNKNOWN;
  int number = 0;
  std::from_chars(name.data() + kNumberedName.size(), name.data() + name.size(), number);
  const DevType type{number};
  return nameOf(type) == name ? type : DEVTYPE_UNKNOWN;
}

}  // namespace

void DevtypeEnumToStr(DevType type, char* out) {
  if (out == nullptr) return;
  const std::string name = nameOf(type);
  out[name.copy(out, name.size())] = '\0';
}

DevType StrToDevType(const char* name) {
  if (name == nullptr) return DEVTYPE_UNKNOWN;
  const std::string_view wanted = name;
  const auto* row = std::find_if(kTypeNames.begin(), kTypeNames.end(),
                                 [wanted](const TypeName& candidate) { return candidate.name == wanted; });
  return row != kTypeNames.end() ? row->type : readNumberedName(wanted);
}
