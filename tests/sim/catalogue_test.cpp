#include "sim/zwave/catalogue.h"

#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>

namespace tembra::sim {
namespace {

struct KnownDevice {
  const char* label;
  int basic, generic, specific;
};

constexpr std::array kDevices{
    KnownDevice{"metering-plug", 4, 0x10, 1},
    KnownDevice{"plain-plug", 4, 0x10, 1},
    KnownDevice{"outlet", 4, 0x10, 0},
    KnownDevice{"dimmer", 4, 0x11, 1},
    KnownDevice{"siren", 4, 0x10, 5},
    KnownDevice{"wall-thermostat", 4, 0x08, 6},
    KnownDevice{"radiator-thermostat", 4, 0x08, 6},
    KnownDevice{"setpoint-thermostat", 4, 0x08, 4},
    KnownDevice{"door-lock", 4, 0x40, 3},
    KnownDevice{"garage-opener", 4, 0x40, 7},
    KnownDevice{"notification-sensor", 4, 0x07, 1},
    KnownDevice{"binary-sensor", 4, 0x20, 1},
    KnownDevice{"multilevel-sensor", 4, 0x21, 1},
    KnownDevice{"alarm-sensor", 4, 0xA1, 2},
    KnownDevice{"remote", 1, 0x01, 1},
    KnownDevice{"chime", 4, 0x03, 1},
    KnownDevice{"alarm-dimmer", 4, 0x11, 1},
    KnownDevice{"roller-shutter", 4, 0x11, 7},
    KnownDevice{"wall-controller", 4, 0x18, 1},
    KnownDevice{"energy-meter", 4, 0x31, 3},
    KnownDevice{"no-basic-class", 0, 0, 0},
};

bool has(const ZwaveDevice& device, unsigned char commandClass) {
  const std::set<unsigned char> classes(device.commandClasses.begin(), device.commandClasses.end());
  return classes.contains(commandClass);
}

TEST(Catalogue, HoldsEveryDeviceWithItsClasses) {
  const ZwaveCatalogue catalogue = ZwaveCatalogue::load(TEMBRA_SIM_CATALOGUE);
  EXPECT_EQ(catalogue.devices().size(), kDevices.size());
  for (const KnownDevice& known : kDevices) {
    SCOPED_TRACE(known.label);
    const ZwaveDevice* const device = catalogue.find(known.label);
    ASSERT_NE(device, nullptr);
    EXPECT_EQ(device->basicClass, known.basic);
    EXPECT_EQ(device->genericClass, known.generic);
    EXPECT_EQ(device->specificClass, known.specific);
    EXPECT_FALSE(device->description.empty());
  }
}

TEST(Catalogue, TellsApartWhatClassificationTellsApart) {
  const ZwaveCatalogue catalogue = ZwaveCatalogue::load(TEMBRA_SIM_CATALOGUE);
  EXPECT_TRUE(has(*catalogue.find("metering-plug"), 0x32));
  EXPECT_FALSE(has(*catalogue.find("plain-plug"), 0x32));
  EXPECT_TRUE(has(*catalogue.find("alarm-dimmer"), 0x71) && has(*catalogue.find("alarm-dimmer"), 0x26));
  EXPECT_FALSE(has(*catalogue.find("dimmer"), 0x71));
  EXPECT_EQ(catalogue.find("remote")->values.front().commandClass, 0x70);
}

TEST(Catalogue, FindsNumberedDevices) {
  const ZwaveCatalogue catalogue = ZwaveCatalogue::load(TEMBRA_SIM_CATALOGUE);
  EXPECT_EQ(catalogue.find("dimmer#2"), catalogue.find("dimmer"));
  for (const char* name : {"", "#2", "dimmer#", "dimmer#x", "dimmer#12345", "Dimmer", "dimmer "}) {
    EXPECT_EQ(catalogue.find(name), nullptr) << name;
  }
}

std::string entry(const std::string& label, const std::string& classes, const std::string& values) {
  return R"({"label": ")" + label + R"(", "description": "d", "basic": 4, "generic": 16, "specific": 1,)" +
         R"("commandClasses": )" + classes + R"(, "values": )" + values + "}";
}

std::string repeated(int count, const std::string& element) {
  std::string list = element;
  for (int i = 1; i < count; ++i) list += "," + element;
  return "[" + list + "]";
}

std::string loadingFailure(const std::string& content) {
  const std::filesystem::path folder = "/tmp/catalogue";
  std::filesystem::create_directory(folder);
  std::ofstream(folder / "zwave.json") << content;
  try {
    ZwaveCatalogue::load(folder);
  } catch (const std::exception& failure) {
    return failure.what();
  }
  return "loaded";
}

TEST(Catalogue, SaysWhatIsWrongInAFile) {
  const std::string good = entry("a", "[37]", "[[37, 0, 1]]");
  struct {
    std::string devices;
    const char* complaint;
  } const files[] = {
      {good, "loaded"},
      {entry("a", repeated(52, "37"), repeated(180, "[37,0,1]")), "loaded"},
      {good + "," + good, "(device 2): there are two devices called a"},
      {entry("Big", "[]", "[]"), "(device 1): a label has"},
      {entry("a", "[255]", "[]"), "255 is not from 1 to 254"},
      {entry("a", "[0]", "[]"), "0 is not from 1 to 254"},
      {entry("a", "[\"0x25\"]", "[]"), "loaded"},
      {entry("a", "[\"37\"]", "[]"), "\"37\" is not a number"},
      {entry("a", "[\"0x\"]", "[]"), "\"0x\" is not a number"},
      {entry("a", "[\"0x25 \"]", "[]"), "\"0x25 \" is not a number"},
      {entry("a", repeated(53, "37"), "[]"), "more than 52 command classes"},
      {entry("a", "[]", repeated(181, "[37,0,1]")), "more than 180 values"},
      {entry("a", "[]", "[[37, 0]]"), "is not [command class, index, instance]"},
      {entry("a", "[]", "[[0, 0, 1]]"), "0 is not from 1 to 255"},
      {R"({"label": "a"})", "has no member \"description\""},
      {R"({"label": "a", "description": 1})", "/zwave.json (device 1): \"description\" is no text"},
      {R"({"label": "a", "description": "d", "basic": 4, "generic": 16, "specific": 1, "commandClasses": 1})",
       "(device 1): \"commandClasses\" is no list"},
      {"1", "(device 1): is no object"},
      {R"({"label": "a", "label": "b"})", R"(has the member "label" twice: see line 1, column 29)"},
      {"nonsense", "/zwave.json: is no JSON text: see line 1, column 15"},
  };
  for (const auto& file : files) {
    const std::string outcome = loadingFailure(R"({"devices": [)" + file.devices + "]}");
    EXPECT_NE(outcome.find(file.complaint), std::string::npos) << file.devices << ": " << outcome;
  }
}

TEST(Catalogue, MissingFileIsOneSentence) { EXPECT_THROW(ZwaveCatalogue::load("/tmp/nowhere"), std::runtime_error); }

}  // namespace
}  // namespace tembra::sim
