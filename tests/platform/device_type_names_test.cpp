// The device-type names of the stand-ins: a name for every number, and back.
#include <gtest/gtest.h>
#include <tembra/platform.h>

#include <algorithm>
#include <array>
#include <climits>
#include <cstring>
#include <set>
#include <string>
#include <vector>

namespace {

struct TypeName {
  int number;
  const char* name;
};

const std::vector<TypeName> kNames = {
    {0, "UnknownDevice"},
    {1, "BinarySwitch"},
    {2, "MultilevelSwitch"},
    {3, "BinarySensor"},
    {4, "MultilevelSwitchOnOff"},
    {5, "DoorLock"},
    {6, "AlarmSensor"},
    {7, "Thermostat"},
    {8, "Gateway"},
    {10, "StandardCIE"},
    {11, "MotionSensor"},
    {12, "ContactSwitch"},
    {13, "FireSensor"},
    {14, "WaterSensor"},
    {15, "GasSensor"},
    {16, "PersonalEmergencyDevice"},
    {17, "VibrationOrMovementSensor"},
    {18, "RemoteControl"},
    {19, "KeyFob"},
    {20, "Keypad"},
    {21, "StandardWarningDevice"},
    {22, "SmartACSwitch"},
    {24, "OccupancySensor"},
    {25, "TemperatureSensor"},
    {26, "Window Covering"},
    {27, "HumiditySensor"},
    {28, "ZigbeeDoorLock"},
    {29, "ZigbeeTempSensor"},
    {32, "ColorDimmableLight"},
    {35, "MultilevelSensor"},
    {36, "ZwaveSmokeSensor"},
    {37, "ZwaveLeakSensor"},
    {38, "ZwaveTiltSensor"},
    {39, "ZwaveContactSensor"},
    {40, "LuminanceSensor"},
    {41, "ZwaveMotionSensor"},
    {42, "Siren"},
    {43, "MultiSwitch"},
    {44, "OutletSwitch"},
    {45, "MeterSwitch"},
    {46, "SetpointThermostat"},
    {47, "GeneralThermostat"},
    {49, "MultiSensor"},
    {50, "Tobble Plug"},
    {52, "MotorControl"},
    {53, "GarageDoorOpener"},
    {54, "ZwaveACExtender"},
    {55, "ZwaveDimmer"},
    {56, "EnergyMeter"},
    {59, "NotificationSensor"},
    {60, "GenericDevice"},
    {61, "DravotekButton"},
    {62, "Zen Thermostat"},
    {65, "IR Extender"},
    {66, "HueLamp"},
    {67, "ZigbeeCamImage"},
};

std::string nameOf(int number) {
  std::array<char, 180> out{};
  DevtypeEnumToStr(static_cast<DevType>(number), out.data());
  return out.data();
}

TEST(DeviceTypeNames, EachListedNumberHasItsNameAndBack) {
  ASSERT_EQ(kNames.size(), 56U);
  for (const TypeName& row : kNames) {
    EXPECT_EQ(nameOf(row.number), row.name);
    EXPECT_EQ(StrToDevType(row.name), row.number) << row.name;
  }
}

TEST(DeviceTypeNames, AListedNameWithAnIdOfFourDigitsFitsTheTextOfAZigbeeRecord) {
  for (const TypeName& row : kNames) EXPECT_LE(std::strlen(row.name), 25U) << row.name;
}

TEST(DeviceTypeNames, AnyOtherNumberIsNamedByTheNumberAndBack) {
  for (int number : {9, 23, 30, 31, 33, 34, 48, 51, 57, 58, 63, 64, 68, 256, -1, INT_MIN, INT_MAX}) {
    const std::string name = "DevType" + std::to_string(number);
    EXPECT_EQ(nameOf(number), name);
    EXPECT_EQ(StrToDevType(name.c_str()), number);
  }
}

TEST(DeviceTypeNames, NoTwoNumbersShareAName) {
  std::set<std::string> names;
  for (int number = -1000; number <= 70000; ++number) {
    const std::string name = nameOf(number);
    ASSERT_TRUE(names.insert(name).second) << name;
    ASSERT_EQ(StrToDevType(name.c_str()), number);
  }
  EXPECT_EQ(names.size(), 71001U);
}

TEST(DeviceTypeNames, AnyOtherTextIsTheUnknownDevice) {
  for (const char* text : {"",
                           " ",
                           "binaryswitch",
                           "BINARYSWITCH",
                           "BinarySwitc",
                           "BinarySwitch ",
                           " BinarySwitch",
                           "BinarySwitch #17",
                           "WindowCovering",
                           "FloodSensor",
                           "Tembra Tap",
                           "Tilt Sensor",
                           "17",
                           "DevType",
                           "DevType1",
                           "DevType60",
                           "DevType09",
                           "DevType+9",
                           "DevType-0",
                           "DevType-",
                           "DevType 9",
                           "DevType9 ",
                           "DevType9x",
                           "DevType0x9",
                           "devtype9",
                           "DevType2147483648",
                           "DevType-2147483649",
                           "DevType99999999999999999999"}) {
    EXPECT_EQ(StrToDevType(text), DEVTYPE_UNKNOWN) << text;
  }
  EXPECT_EQ(StrToDevType(nullptr), DEVTYPE_UNKNOWN);
}

TEST(DeviceTypeNames, WritesTheNameAndItsNulOnly) {
  std::array<char, 180> out{};
  out.fill('#');
  DevtypeEnumToStr(DEVTYPE_SIREN, out.data());
  EXPECT_STREQ(out.data(), "Siren");
  EXPECT_EQ(std::count(out.begin(), out.end(), '#'), 174);
  DevtypeEnumToStr(DEVTYPE_SIREN, nullptr);
}

}  // namespace
