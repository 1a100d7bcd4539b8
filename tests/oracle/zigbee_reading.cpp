#include "zigbee_reading.h"

#include <tembra/platform.h>

#include <initializer_list>
#include <string_view>

namespace oracle {
namespace {

constexpr unsigned kNoCluster = 0xFFFF;
constexpr int kMostClusters = 30;
constexpr int kMostIndexEntries = 29;

bool contains(const std::string& text, const char* part) { return text.find(part) != std::string::npos; }

/// One walk over the clusters of one device.
class Walk {
 public:
  Walk(DescribedDevice& device, int deviceId) : device_(device), id_(deviceId) {}

  ZigbeeOutcome run() {
    device_.classifiedType = 0;
    for (int at = 0; at < kMostClusters && cluster(at) != kNoCluster && !failed_; ++at) visit(at);
    if (failed_) return {-1, log_, formatted_};
    finish();
    return {0, log_, formatted_};
  }

 private:
  // ---- The record, by offset ---------------------------------------------------------------------------------------

  [[nodiscard]] unsigned byte(int offset) const { return device_.record.bytes[static_cast<std::size_t>(offset)]; }
  void setByte(int offset, unsigned value) {
    device_.record.bytes[static_cast<std::size_t>(offset)] = static_cast<unsigned char>(value);
  }
  [[nodiscard]] unsigned word(int offset) const { return byte(offset) | byte(offset + 1) << 8U; }

  [[nodiscard]] unsigned cluster(int at) const { return at < kMostClusters ? word(12 + 4 * at) : kNoCluster; }
  [[nodiscard]] unsigned endpoint(int at) const { return word(14 + 4 * at); }
  [[nodiscard]] unsigned type() const { return byte(212); }
  void setType(unsigned value) { setByte(212, value); }

  // ---- What a rule does --------------------------------------------------------------------------------------------

  void say(std::initializer_list<std::string_view> parts) {
    std::string text;
    for (const std::string_view part : parts) text += part;
    if (parts.size() > 1) formatted_.push_back(text);
    log_.push_back("log 0 " + text);
  }

  void setName(const std::string& word) {
    device_.name.setText(std::string(word).append(" #").append(std::to_string(id_)));
  }

  void become(const std::string& word, unsigned value) {
    setName(word);
    setType(value);
  }

  // Entries behind the last place are dropped.
  void addType(unsigned type) {
    ++asked_;
    if (slot_ > kMostIndexEntries) return;
    setByte(318 + 2 * slot_, type);
    ++slot_;
  }

  void addEntry(unsigned type, unsigned endpoint) {
    if (slot_ <= kMostIndexEntries) setByte(319 + 2 * slot_, endpoint);
    addType(type);
  }

  void addEntries(std::initializer_list<unsigned> types) {
    for (const unsigned type : types) addEntry(type, endpoint_);
  }

  // ---- The clusters ------------------------------------------------------------------------------------------------

  void visit(int at);
  void onOff();
  void levelControl();
  void thermostat();
  void colourControl();
  void temperature();
  void occupancy();
  void zone(unsigned nextCluster);
  void cameraZone();
  void plainZone();
  void addZoneEntries();
  void nameZone(const std::string& name);
  void unsettleZone();
  void electricalMeasurement();
  void meteringSwitch();
  void finish();

  void becomeUndecided(std::initializer_list<unsigned> types, bool unless = false) {
    addEntries(types);
    if (!unless) setType(0);
    ++found_;
  }

  void becomeAtOnce(std::initializer_list<unsigned> types, const char* word, unsigned type) {
    addEntries(types);
    become(word, type);
    ++found_;
  }

  DescribedDevice& device_;
  const int id_;
  const std::string manufacturer_ = device_.record.text(132, 80);
  const std::string model_ = device_.record.text(296, 22);
  int slot_ = 1;
  int asked_ = 1;  // the slot, had the table no end
  int found_ = 0;
  unsigned endpoint_ = 0;
  bool failed_ = false;
  Lines log_;
  Lines formatted_;
};

void Walk::visit(int at) {
  endpoint_ = endpoint(at);
  switch (cluster(at)) {
    case 0x0006:
      return onOff();
    case 0x0008:
      return levelControl();
    case 0x0100:
    case 0x0200:
    case 0x0404:
      return becomeUndecided({});
    case 0x0101:
      return becomeAtOnce({23}, "ZigbeeDoorLock", 28);
    case 0x0102:
      return becomeAtOnce({116}, "Window Covering", 26);
    case 0x0201:
      return thermostat();
    case 0x0202:
      return addEntries({39, 40});
    case 0x0300:
      return colourControl();
    case 0x0400:
      return becomeUndecided({28});
    case 0x0402:
      return temperature();
    case 0x0403:
      return becomeUndecided({26});
    case 0x0405:
      return becomeUndecided({27}, type() == 24);
    case 0x0406:
      return occupancy();
    case 0x0500:
      return zone(cluster(at + 1));
    case 0x0702:
      return becomeUndecided({108, 109, 110, 111}, contains(model_, "ESW"));
    case 0x0B04:
      return electricalMeasurement();
    default:
      return;
  }
}

void Walk::onOff() {
  addEntries({1});
  if (type() != 1) {
    become("BinarySwitch", 1);
  } else {
    become("MultiSwitch", 43);
  }
  ++found_;
}

void Walk::levelControl() {
  addEntries({18});
  if (type() != 1) {
    become("MultilevelSwitch", 2);
  } else {
    become("MultilevelSwitchOnOff", 4);
  }
  ++found_;
}

void Walk::thermostat() {
  addEntries({35, 36, 37, 38, 25});
  if (manufacturer_ == "Zen Within") {
    become("Zen Thermostat", 62);
  } else if (contains(model_, "UPIC")) {
    become("IR Extender", 65);
  } else {
    become("Thermostat", 7);
  }
  ++found_;
}

void Walk::colourControl() {
  addEntries({31, 32, 33});
  if (type() == 4) {
    become("ColorDimmableLight", 32);
  } else {
    setType(0);
  }
  ++found_;
}

void Walk::temperature() {
  addEntries({25});
  if (type() == 0) {
    become("ZigbeeTempSensor", 29);
  } else if (type() != 24) {
    setType(0);
  }
  if (contains(model_, "SML0")) setType(0);
  ++found_;
}

void Walk::occupancy() {
  addEntries({3});
  if (manufacturer_ == "NYCE" && contains(model_, "3041")) become("OccupancySensor", 24);
  ++found_;
}

void Walk::zone(unsigned nextCluster) {
  say({"libTembraAssoc:ias zone cluster"});
  say({"libTembraAssoc:Manufacturer name received:", manufacturer_});
  if (nextCluster == 0x0503) return cameraZone();
  if (nextCluster == 0x0504) return;
  if (type() != 24) plainZone();
  ++found_;
}

void Walk::cameraZone() {
  say({"libTembraAssoc:Found 503 cluster ", std::to_string(slot_)});
  addEntries({3, 12, 9});
  for (const unsigned type : {128U, 129U, 130U, 131U}) addType(type);
  say({"libTembraAssoc:Found 503 device ", std::to_string(slot_)});
  become("ZigbeeCamImage", 67);
}

void Walk::plainZone() {
  const std::string name = zoneName(word(214), manufacturer_, model_);
  device_.classifiedType = StrToDevType(name.c_str());
  if (contains(model_, "MiniSD")) {
    say({"libTembraAssoc:Mini smoke detector found"});
    if (endpoint_ == 2) device_.classifiedType = 11;
  }
  say({"libTembraAssoc:Device associated:", name, " "});
  addZoneEntries();
  nameZone(name);
  setType(static_cast<unsigned>(device_.classifiedType) & 0xFFU);
  unsettleZone();
}

void Walk::addZoneEntries() {
  switch (device_.classifiedType) {
    case 10:
      return addEntries({2, 12, 9});
    case 11:
      say({"libTembraAssoc:Detected as a motion sensor"});
      return addEntries({3, 12, 9});
    case 12:
      if (contains(model_, "XE01S")) return addEntries({12});
      return addEntries({4, 12, 9});
    case 13:
      return addEntries({8, 12, 9});
    case 14:
      return addEntries({6, 12, 9});
    case 15:
      return addEntries({7, 12, 9});
    case 17:
      return addEntries({5, 12, 9});
    case 19:
      return addEntries({24, 10, 11});
    case 21:
      return addEntries({13, 12, 9});
    case 61:
      return addEntries({91, 12, 9});
    default:
      return addEntries({12});
  }
}

void Walk::nameZone(const std::string& name) {
  if (name == "WaterSensor") return setName("FloodSensor");
  if (name == "DravotekButton") return setName("Tembra Tap");
  if (manufacturer_ == "NYCE" && contains(model_, "3014")) return setName("Tilt Sensor");
  setName(name);
}

void Walk::unsettleZone() {
  if (contains(model_, "MiniSD")) return setType(0);
  if (!contains(model_, "SZ-PIR04N")) return;
  for (int at = slot_; at >= 0; --at) {
    if (byte(318 + 2 * at) != 28) continue;
    setType(0);
    say({"libTembraAssoc:Sercomm motion and illuminance found"});
  }
}

void Walk::electricalMeasurement() {
  for (int at = asked_; at < asked_ + 13 && 319 + 2 * at < 444; ++at) setByte(319 + 2 * at, endpoint_);
  for (const unsigned type : {86U, 52U, 53U, 54U}) addType(type);
  ++found_;
  if (type() == 1) meteringSwitch();
}

void Walk::meteringSwitch() {
  if (manufacturer_ == "Dravotek Ltd." && word(292) == 0x1002 && word(294) == 0x5EC0) {
    become("Tobble Plug", 50);
    say({"libTembraAssoc:Manu name ", manufacturer_, " \n"});
  } else if (manufacturer_ != "OSRAM") {
    const bool bothZero = word(232) == 0 && word(240) == 0;
    failed_ = bothZero || word(228) == 0;
    if (!failed_) become("SmartACSwitch", 22);
  } else {
    say({"libTembraAssoc:Manufacturer Name: Osram"});
  }
}

void Walk::finish() {
  constexpr char digits[] = "0123456789abcdef";
  setByte(318 + 2 * slot_, 255);
  setByte(318, static_cast<unsigned>(slot_) - 1);
  std::string zoneType;
  for (unsigned rest = word(214); rest > 0 || zoneType.empty(); rest /= 16) {
    zoneType.insert(zoneType.begin(), digits[rest % 16]);
  }
  say({"libTembraAssoc:No. of clusters found:", std::to_string(found_), " and indexes:", std::to_string(slot_ - 1),
       " zonetype:", zoneType});
  if (type() == 0) become("GenericDevice", 60);
}

}  // namespace

ZigbeeOutcome readDescription(DescribedDevice& device, int deviceId) { return Walk(device, deviceId).run(); }

std::string zoneName(unsigned zoneType, const std::string& manufacturer, const std::string& model) {
  switch (zoneType) {
    case 0x0000:
      return "StandardCIE";
    case 0x000D:
      return "MotionSensor";
    case 0x0015:
      return "ContactSwitch";
    case 0x0028:
      return "FireSensor";
    case 0x002A:
      return "WaterSensor";
    case 0x002B:
      return "GasSensor";
    case 0x002C:
      return "PersonalEmergencyDevice";
    case 0x002D:
      return "VibrationOrMovementSensor";
    case 0x010F:
      return contains(model, "RC_ACE") ? "KeyFob" : "RemoteControl";
    case 0x0115:
      return contains(manufacturer, "Dravotek Ltd.") ? "DravotekButton" : "KeyFob";
    case 0x021D:
      return "Keypad";
    case 0x0225:
      return "StandardWarningDevice";
    default:
      return "UnknownDevice";
  }
}

}  // namespace oracle
