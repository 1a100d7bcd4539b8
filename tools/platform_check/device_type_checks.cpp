#include <tembra/platform.h>

#include <climits>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include "platform_check/checks.h"
#include "platform_check/memory.h"

namespace tembra::platform_check {
namespace {

constexpr std::size_t kRoom = 180;
constexpr std::size_t kFurthest = 512;  // the service survives a name that is too long up to here
constexpr std::size_t kLongestGood = 25;

struct TypeName {
  DevType type;
  const char* name;
};

constexpr TypeName kFixed[] = {
    {DEVTYPE_GENERIC_DEVICE, "GenericDevice"},       {DEVTYPE_BINARY_SWITCH, "BinarySwitch"},
    {DEVTYPE_MULTILEVEL_SWITCH, "MultilevelSwitch"}, {DEVTYPE_MULTILEVEL_SWITCH_ON_OFF, "MultilevelSwitchOnOff"},
    {DEVTYPE_MULTI_SWITCH, "MultiSwitch"},
};

// By these the service asks for the type of a ZigBee zone, and tells by the number which values the device has.
constexpr TypeName kZones[] = {
    {DEVTYPE_STANDARD_CIE, "StandardCIE"},
    {DEVTYPE_MOTION_SENSOR, "MotionSensor"},
    {DEVTYPE_CONTACT_SWITCH, "ContactSwitch"},
    {DEVTYPE_FIRE_SENSOR, "FireSensor"},
    {DEVTYPE_WATER_SENSOR, "WaterSensor"},
    {DEVTYPE_GAS_SENSOR, "GasSensor"},
    {DEVTYPE_VIBRATION_SENSOR, "VibrationOrMovementSensor"},
    {DEVTYPE_KEY_FOB, "KeyFob"},
    {DEVTYPE_DRAVOTEK_BUTTON, "DravotekButton"},
    {DEVTYPE_STANDARD_WARNING, "StandardWarningDevice"},
};

// The service asks for these, too, and passes on whatever number comes.
constexpr TypeName kZonesWithoutValues[] = {
    {DEVTYPE_PERSONAL_EMERGENCY, "PersonalEmergencyDevice"},
    {DEVTYPE_REMOTE_CONTROL, "RemoteControl"},
    {DEVTYPE_KEYPAD, "Keypad"},
};

// Every other number that the service gives a device.
constexpr int kGiven[] = {0,  1,  2,  3,  4,  5,  6,  7,  8,  10, 11, 12, 13, 14, 15, 17, 19, 21,
                          22, 24, 25, 26, 27, 28, 29, 32, 35, 36, 37, 38, 39, 40, 41, 42, 43, 44,
                          45, 46, 47, 49, 50, 52, 53, 54, 55, 56, 59, 60, 61, 62, 65, 67};

std::string nameOf(Trial& trial, int number) {
  trial.tries("the name of " + std::to_string(number));
  const EdgeMemory room(kFurthest);
  std::memset(room.data(), '?', room.size());
  DevtypeEnumToStr(static_cast<DevType>(number), room.data());
  const std::size_t length = strnlen(room.data(), room.size());
  trial.expects(length < kRoom, "at most 179 characters and a NUL",
                length == kFurthest ? "no NUL" : std::to_string(length) + " characters");
  return {room.data(), length};
}

int numberOf(Trial& trial, const std::string& name) {
  trial.tries("the number of " + quoted(name));
  const EdgeText text(name);
  return StrToDevType(text.get());
}

void checkNames(Trial& trial) {
  for (const TypeName& row : kFixed) {
    const std::string name = nameOf(trial, row.type);
    trial.expects(name == row.name, quoted(row.name), quoted(name));
  }
  for (const int number : kGiven) {
    const std::string name = nameOf(trial, number);
    trial.prefers(!name.empty(), "a name", "an empty text");
    trial.prefers(name.size() <= kLongestGood, "at most 25 characters, or it runs into the location of a ZigBee device",
                  quoted(name));
  }
  for (const int number : {-1, 9, 99, 255, 256, 65535, INT_MIN, INT_MAX}) nameOf(trial, number);
}

void checkNumbers(Trial& trial) {
  for (const TypeName& row : kZones) {
    const int number = numberOf(trial, row.name);
    trial.expects(number == row.type, std::to_string(row.type), std::to_string(number));
  }
  for (const TypeName& row : kZonesWithoutValues) {
    const int number = numberOf(trial, row.name);
    trial.prefers(number == row.type, std::to_string(row.type) + ", which the service's own lists call so",
                  std::to_string(number));
  }
  for (const int given : kGiven) {
    if (given == DEVTYPE_UNKNOWN) continue;  // a remark below
    const int number = numberOf(trial, nameOf(trial, given));
    trial.expects(number == given, std::to_string(given) + ", whose name it is", std::to_string(number));
  }
  for (const std::string& name : {std::string(), std::string("NoSuchDevice"), std::string(kRoom - 1, 'x')}) {
    const int number = numberOf(trial, name);
    trial.prefers(number == 0, "0, or lists of devices show a wrong number", std::to_string(number));
  }
  const int unknown = numberOf(trial, "UnknownDevice");
  trial.prefers(unknown == 0, "0, or a ZigBee zone of unknown type gets the number that came", std::to_string(unknown));
}

// Each thread asks for a name and its number again and again; true when no other thread's came.
bool keepsApart(const TypeName& row) {
  constexpr int kTurns = 2000;
  for (int turn = 0; turn < kTurns; ++turn) {
    char name[kFurthest] = {};
    DevtypeEnumToStr(row.type, name);
    if (std::strcmp(name, row.name) != 0 || StrToDevType(row.name) != row.type) return false;
  }
  return true;
}

void checkTypesOfThreads(Trial& trial) {
  trial.tries("names and numbers in two threads at a time");
  bool first = false;
  std::thread other([&first] { first = keepsApart(kFixed[0]); });
  const bool second = keepsApart(kFixed[1]);
  other.join();
  trial.expects(first && second, "each thread's own answer", "another one");
}

}  // namespace

std::vector<Check> deviceTypeChecks() {
  return {
      {"DevtypeEnumToStr", "the names that are fixed, of every given number, and of numbers without a type",
       checkNames},
      {"StrToDevType", "the numbers of ZigBee zones, of every given number's name, and of unknown names", checkNumbers},
      {"device types, threads", "both functions in two threads at a time", checkTypesOfThreads}};
}

}  // namespace tembra::platform_check
