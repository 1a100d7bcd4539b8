// The ZigBee devices of the catalogue, and what the library makes of them.
#include <gtest/gtest.h>
#include <tembra/association.h>

#include <array>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>

#include "sim/home.h"
#include "sim/zigbee/descriptions.h"
#include "tembra/vocabulary.h"

namespace tembra::sim {
namespace {

struct KnownZigbeeDevice {
  const char* label;
  int type;
  int indexes;
  int result = 0;
};

constexpr std::array kZigbeeDevices{
    KnownZigbeeDevice{"zb-plug", DEVTYPE_BINARY_SWITCH, 1},
    KnownZigbeeDevice{"zb-dimmer", DEVTYPE_MULTILEVEL_SWITCH_ON_OFF, 2},
    KnownZigbeeDevice{"zb-colour-lamp", DEVTYPE_COLOR_DIMMABLE_LIGHT, 5},
    KnownZigbeeDevice{"zb-metering-plug", DEVTYPE_GENERIC_DEVICE, 9},
    KnownZigbeeDevice{"zb-ac-plug", DEVTYPE_SMART_AC_SWITCH, 5},
    KnownZigbeeDevice{"zb-ac-plug-mute", DEVTYPE_BINARY_SWITCH, 0, -1},
    KnownZigbeeDevice{"zb-makers-plug", DEVTYPE_TOBBLE_PLUG, 5},
    KnownZigbeeDevice{"zb-thermostat", DEVTYPE_THERMOSTAT, 5},
    KnownZigbeeDevice{"zb-zen-thermostat", DEVTYPE_ZEN_THERMOSTAT, 7},
    KnownZigbeeDevice{"zb-ir-extender", DEVTYPE_IR_EXTENDER, 5},
    KnownZigbeeDevice{"zb-door-lock", DEVTYPE_ZIGBEE_DOOR_LOCK, 1},
    KnownZigbeeDevice{"zb-window-covering", DEVTYPE_WINDOW_COVERING, 1},
    KnownZigbeeDevice{"zb-occupancy", DEVTYPE_OCCUPANCY_SENSOR, 1},
    KnownZigbeeDevice{"zb-presence", DEVTYPE_GENERIC_DEVICE, 1},
    KnownZigbeeDevice{"zb-temperature", DEVTYPE_ZIGBEE_TEMP_SENSOR, 1},
    KnownZigbeeDevice{"zb-climate", DEVTYPE_GENERIC_DEVICE, 2},
    KnownZigbeeDevice{"zb-hall-sensor", DEVTYPE_GENERIC_DEVICE, 3},
    KnownZigbeeDevice{"zb-contact", DEVTYPE_CONTACT_SWITCH, 3},
    KnownZigbeeDevice{"zb-multi", DEVTYPE_CONTACT_SWITCH, 4},
    KnownZigbeeDevice{"zb-motion", DEVTYPE_MOTION_SENSOR, 3},
    KnownZigbeeDevice{"zb-water", DEVTYPE_WATER_SENSOR, 3},
    KnownZigbeeDevice{"zb-smoke", DEVTYPE_FIRE_SENSOR, 3},
    KnownZigbeeDevice{"zb-mini-smoke", DEVTYPE_GENERIC_DEVICE, 3},
    KnownZigbeeDevice{"zb-key-fob", DEVTYPE_KEY_FOB, 3},
    KnownZigbeeDevice{"zb-remote", DEVTYPE_REMOTE_CONTROL, 1},
    KnownZigbeeDevice{"zb-button", DEVTYPE_DRAVOTEK_BUTTON, 3},
    KnownZigbeeDevice{"zb-siren", DEVTYPE_STANDARD_WARNING, 3},
    KnownZigbeeDevice{"zb-keypad", DEVTYPE_KEYPAD, 2},
    KnownZigbeeDevice{"zb-camera", DEVTYPE_ZIGBEE_CAM_IMAGE, 7},
    KnownZigbeeDevice{"zb-tilt", DEVTYPE_CONTACT_SWITCH, 3},
    KnownZigbeeDevice{"zb-vibration", DEVTYPE_VIBRATION_SENSOR, 4},
    KnownZigbeeDevice{"zb-fan", DEVTYPE_MULTILEVEL_SWITCH_ON_OFF, 4},
    KnownZigbeeDevice{"zb-power-strip", DEVTYPE_BINARY_SWITCH, 5},
    KnownZigbeeDevice{"zb-energy-monitor", DEVTYPE_GENERIC_DEVICE, 29},
    KnownZigbeeDevice{"zb-unknown", DEVTYPE_GENERIC_DEVICE, 0},
};

TEST(ZigbeeCatalogue, HoldsOneDeviceForEveryWayToBeClassified) {
  const ZigbeeCatalogue catalogue = ZigbeeCatalogue::load(TEMBRA_SIM_CATALOGUE);
  EXPECT_EQ(catalogue.devices().size(), kZigbeeDevices.size());
  TembraAssociation* const library = TembraAssociation::LCDAssocInit();
  for (const KnownZigbeeDevice& known : kZigbeeDevices) {
    SCOPED_TRACE(known.label);
    const ZigbeeDevice* const device = catalogue.find(known.label);
    ASSERT_NE(device, nullptr);
    EXPECT_FALSE(device->description.empty());
    library->zbDevice = describedDevice(0x1234, ZIGBEE_INFO_COMPLETE, *device);
    EXPECT_EQ(library->validate_DeviceType(), known.result);
    EXPECT_EQ(library->zbDevice.devType, known.type);
    EXPECT_EQ(library->zbDevice.indexCount, known.indexes);
  }
}

TEST(Home, KnowsEveryNameThatCanBePressed) {
  const Home home = Home::load(TEMBRA_SIM_CATALOGUE);
  for (const char* name : {"siren", "zb-siren", "zb-siren#2", "hue-button"}) EXPECT_TRUE(home.has(name)) << name;
  for (const char* name : {"", "hue-button#2", "zb-siren#", "bridge"}) EXPECT_FALSE(home.has(name)) << name;
}

std::string zigbeeEntry(const std::string& label, const std::string& model, const std::string& clusters,
                        const std::string& more = "") {
  return R"({"label": ")" + label + R"(", "description": "d", "manufacturer": "m", "model": ")" + model +
         R"(", "clusters": )" + clusters + more + "}";
}

std::string pairs(int count) {
  std::string list = "[6, 1]";
  for (int i = 1; i < count; ++i) list += ", [6, 1]";
  return "[" + list + "]";
}

std::string zigbeeLoadingFailure(const std::string& content) {
  const std::filesystem::path folder = "/tmp/catalogue";
  std::filesystem::create_directory(folder);
  std::ofstream(folder / "zwave.json") << R"({"devices": [{"label": "both", "description": "d", "basic": 4,
      "generic": 16, "specific": 1, "commandClasses": [37], "values": []}]})";
  std::ofstream(folder / "zigbee.json") << content;
  try {
    Home::load(folder);
  } catch (const std::exception& failure) {
    return failure.what();
  }
  return "loaded";
}

TEST(ZigbeeCatalogue, SaysWhatIsWrongInAFile) {
  const std::string good = zigbeeEntry("a", "", "[]");
  struct {
    std::string devices;
    const char* complaint;
  } const files[] = {
      {good, "loaded"},
      {zigbeeEntry("a", std::string(21, 'x'), pairs(29), R"(, "zoneType": 65535)"), "loaded"},
      {good + "," + good, "(device 2): there are two devices called a"},
      {zigbeeEntry("both", "", "[]"), "both have a device called both"},
      {zigbeeEntry("A", "", "[]"), "(device 1): a label has"},
      {zigbeeEntry("a", std::string(22, 'x'), "[]"), "is longer than 21 characters"},
      {zigbeeEntry("a", "", pairs(30)), "more than 29 clusters"},
      {zigbeeEntry("a", "", "[[6]]"), "[6] is not [cluster, endpoint]"},
      {zigbeeEntry("a", "", "[[65535, 1]]"), "65535 is not from 0 to 65534"},
      {zigbeeEntry("a", "", "[[6, 0]]"), "0 is not from 1 to 254"},
      {zigbeeEntry("a", "", "[[6, 255]]"), "255 is not from 1 to 254"},
      {zigbeeEntry("a", "", "[]", R"(, "zoneType": 65536)"), "65536 is not from 0 to 65535"},
      {zigbeeEntry("a", "", "[]", R"(, "acChecks": [1, 2])"), "\"acChecks\" is not a list of 3 numbers"},
      {zigbeeEntry("a", "", "[]", R"(, "productWords": 1)"), "\"productWords\" is not a list of 2 numbers"},
      {R"({"label": "a", "description": "d"})", "manufacturer"},
      {"nonsense", "is no JSON text: see line 1, column 15"},
  };
  for (const auto& file : files) {
    const std::string outcome = zigbeeLoadingFailure(R"({"devices": [)" + file.devices + "]}");
    EXPECT_NE(outcome.find(file.complaint), std::string::npos) << file.devices << ": " << outcome;
  }
}

std::filesystem::path fileOf(const std::string& name, const std::string& devices) {
  std::ofstream(name) << R"({"devices": [)" + devices + "]}";
  return name;
}

TEST(Home, HasTheDevicesOfItsOwnFilesBesideTheCatalogue) {
  constexpr char kZwave[] = R"({"label": "zb-plug", "description": "now Z-Wave", "basic": "0x04", "generic": "0x10",
                                "specific": 1, "commandClasses": ["0x25"], "values": [["0x25", 0, 1]]})";
  const Home before = Home::load(TEMBRA_SIM_CATALOGUE);
  const Home home =
      Home::load(TEMBRA_SIM_CATALOGUE,
                 {fileOf("/tmp/one.json", zigbeeEntry("new", "", "[[6, 1]]") + "," + zigbeeEntry("dimmer", "", "[]")),
                  fileOf("/tmp/two.json", kZwave + ("," + zigbeeEntry("new", "m", "[]")))});
  EXPECT_EQ(home.zwave.devices().size(), before.zwave.devices().size());  // one came, one left
  EXPECT_EQ(home.zigbee.devices().size(), before.zigbee.devices().size() + 1);
  EXPECT_EQ(home.zwave.find("dimmer"), nullptr);
  EXPECT_EQ(home.zigbee.find("zb-plug"), nullptr);
  EXPECT_EQ(home.zwave.find("zb-plug")->genericClass, 0x10);
  EXPECT_EQ(home.zigbee.find("new")->model, "m") << "the later file counts";
  EXPECT_TRUE(home.has("siren"));
}

TEST(Home, SaysWhatIsWrongInAFileOfItsOwn) {
  const auto failure = [](const std::filesystem::path& file) -> std::string {
    try {
      Home::load(TEMBRA_SIM_CATALOGUE, {file});
    } catch (const std::exception& refusal) {
      return refusal.what();
    }
    return "loaded";
  };
  EXPECT_EQ(failure("/tmp/nowhere.json"), "the catalogue /tmp/nowhere.json: cannot be read");
  EXPECT_EQ(failure("/tmp"), "the catalogue /tmp: is a folder");
  std::ofstream("/tmp/list.json") << "[]";
  EXPECT_EQ(failure("/tmp/list.json"), "the catalogue /tmp/list.json: is no object");
  const std::string twice = zigbeeEntry("a", "", "[]") + R"(, {"label": "a", "generic": 16})";
  EXPECT_EQ(failure(fileOf("/tmp/own.json", twice)),
            "the catalogue /tmp/own.json (device 2): there are two devices called a");
}

}  // namespace
}  // namespace tembra::sim
