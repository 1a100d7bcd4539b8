// How ZigBee devices are classified, as data: the library decides by these rows, and a front end can say why.
//
// A device's clusters are visited in order. Each cluster that has a ZbClusterRule adds its index entries. Then the
// first ZbDecision of the cluster whose tests all hold names the device and sets its type. The tests see what earlier
// clusters decided, so the order of the clusters matters. The IAS zone cluster has rules of its own (ZbZoneCase and
// what follows it).
#ifndef TEMBRA_RULES_H
#define TEMBRA_RULES_H

#include <tembra/records.h>
#include <tembra/vocabulary.h>
#include <cstddef>
#include <cstring>

/// ZigBee cluster identifiers that classification knows (ZigBee Cluster Library).
enum ZbCluster : int {
  ZB_ON_OFF = 0x0006,
  ZB_LEVEL_CONTROL = 0x0008,
  ZB_SHADE_CONFIGURATION = 0x0100,
  ZB_DOOR_LOCK = 0x0101,
  ZB_WINDOW_COVERING = 0x0102,
  ZB_PUMP_CONFIGURATION = 0x0200,
  ZB_THERMOSTAT = 0x0201,
  ZB_FAN_CONTROL = 0x0202,
  ZB_COLOR_CONTROL = 0x0300,
  ZB_ILLUMINANCE = 0x0400,
  ZB_TEMPERATURE = 0x0402,
  ZB_PRESSURE = 0x0403,
  ZB_FLOW = 0x0404,
  ZB_HUMIDITY = 0x0405,
  ZB_OCCUPANCY = 0x0406,
  ZB_IAS_ZONE = 0x0500,
  ZB_IAS_CAMERA = 0x0503,    ///< directly behind an IAS zone: the zone is a camera
  ZB_IAS_ATTACHED = 0x0504,  ///< directly behind an IAS zone: the zone is ignored
  ZB_METERING = 0x0702,
  ZB_ELECTRICAL_MEASUREMENT = 0x0B04,
  ZB_END = 0xFFFF
};

// ---- Tests ----------------------------------------------------------------------------------------------------------

/// What a decision may ask of the device as it stands when its cluster is visited.
enum ZbTestKind : int {
  ZB_ALWAYS = 0,
  ZB_TYPE_IS,
  ZB_TYPE_IS_NOT,
  ZB_MANUFACTURER_IS,  ///< exact, case-sensitive
  ZB_MANUFACTURER_IS_NOT,
  ZB_MANUFACTURER_HAS,  ///< case-sensitive substring
  ZB_MODEL_HAS,         ///< case-sensitive substring
  ZB_MAKERS_PLUG,       ///< the maker's own plug, by manufacturer and both product words
  ZB_AC_CHECK_FAILS     ///< the measured values of a SmartACSwitch are missing
};

/// One question; what it is compared with stands beside it. An empty test, `{}`, always holds.
struct ZbTest {
  ZbTestKind kind;
  int type;          ///< DevType that ZB_TYPE_IS and ZB_TYPE_IS_NOT compare with
  const char* text;  ///< text that the tests of manufacturer and model compare with
};

/// Whether a text field (which may lack its NUL) equals `text`.
template <std::size_t Size>
bool zbTextIs(const char (&field)[Size], const char* text) {
  return std::strncmp(field, text, Size) == 0;
}

/// Whether a text field (which may lack its NUL) contains `text`.
template <std::size_t Size>
bool zbTextHas(const char (&field)[Size], const char* text) {
  const std::size_t length = std::strlen(text);
  for (std::size_t at = 0; at + length <= Size; ++at) {
    if (std::strncmp(field + at, text, length) == 0) return true;
    if (field[at] == '\0') return false;
  }
  return false;
}

/// The plug of the router's own maker.
inline bool zbIsMakersPlug(const ZbDeviceInfo& device) {
  const std::size_t compared = 40;
  return std::strncmp(device.manufacturer, "Dravotek Ltd.", compared) == 0 && device.productWordA == 0x1002 &&
         device.productWordB == 0x5EC0;
}

/// A metering switch whose measured values are missing is no SmartACSwitch.
inline bool zbAcCheckFails(const ZbDeviceInfo& device) {
  return (device.acCheckB == 0 && device.acCheckC == 0) || device.acCheckA == 0;
}

/// Whether the device as it stands passes the test.
inline bool zbTestHolds(const ZbTest& test, const ZbDeviceInfo& device) {
  switch (test.kind) {
    case ZB_ALWAYS:
      return true;
    case ZB_TYPE_IS:
      return device.devType == test.type;
    case ZB_TYPE_IS_NOT:
      return device.devType != test.type;
    case ZB_MANUFACTURER_IS:
      return zbTextIs(device.manufacturer, test.text);
    case ZB_MANUFACTURER_IS_NOT:
      return !zbTextIs(device.manufacturer, test.text);
    case ZB_MANUFACTURER_HAS:
      return zbTextHas(device.manufacturer, test.text);
    case ZB_MODEL_HAS:
      return zbTextHas(device.model, test.text);
    case ZB_MAKERS_PLUG:
      return zbIsMakersPlug(device);
    case ZB_AC_CHECK_FAILS:
      return zbAcCheckFails(device);
  }
  return false;
}

// ---- Clusters -------------------------------------------------------------------------------------------------------

/// What a cluster adds to the index table, whatever is decided. The IAS zone's entries depend on the zone.
struct ZbClusterRule {
  ZbCluster cluster;
  const char* title;
  unsigned char entries[5];  ///< IndexType codes, up to a 0
  bool counted;              ///< whether the log's number of clusters includes it; of an IAS zone ZbZoneCase tells
};

static const ZbClusterRule zbClusterRules[] = {
    {ZB_ON_OFF, "on/off", {INDEX_SWITCH}, true},
    {ZB_LEVEL_CONTROL, "level control", {INDEX_ZIGBEE_LEVEL}, true},
    {ZB_SHADE_CONFIGURATION, "shade configuration", {}, true},
    {ZB_DOOR_LOCK, "door lock", {INDEX_ZIGBEE_DOOR_LOCK}, true},
    {ZB_WINDOW_COVERING, "window covering", {INDEX_WINDOW_COVERING}, true},
    {ZB_PUMP_CONFIGURATION, "pump configuration", {}, true},
    {ZB_THERMOSTAT,
     "thermostat",
     {INDEX_THERMOSTAT_MODE, INDEX_THERMOSTAT_STATE, INDEX_HEATING_SETPOINT, INDEX_COOLING_SETPOINT, INDEX_TEMPERATURE},
     true},
    {ZB_FAN_CONTROL, "fan control", {INDEX_FAN_MODE, INDEX_FAN_CONTROL_2}, false},
    {ZB_COLOR_CONTROL, "colour control", {INDEX_COLOR_1, INDEX_COLOR_2, INDEX_COLOR_3}, true},
    {ZB_ILLUMINANCE, "illuminance", {INDEX_ILLUMINANCE}, true},
    {ZB_TEMPERATURE, "temperature", {INDEX_TEMPERATURE}, true},
    {ZB_PRESSURE, "pressure", {INDEX_PRESSURE}, true},
    {ZB_FLOW, "flow", {}, true},
    {ZB_HUMIDITY, "humidity", {INDEX_HUMIDITY}, true},
    {ZB_OCCUPANCY, "occupancy", {INDEX_MOTION}, true},
    {ZB_IAS_ZONE, "IAS zone", {}, false},
    {ZB_METERING, "metering", {INDEX_METERING_1, INDEX_METERING_2, INDEX_METERING_3, INDEX_METERING_4}, true},
    {ZB_ELECTRICAL_MEASUREMENT,
     "electrical measurement",
     {INDEX_MEASUREMENT_1, INDEX_MEASUREMENT_2, INDEX_MEASUREMENT_3, INDEX_MEASUREMENT_4},
     true},
};

/// The rule of a cluster, null when it has none and is skipped.
static inline const ZbClusterRule* zbFindClusterRule(int cluster) {
  for (const ZbClusterRule& rule : zbClusterRules) {
    if (rule.cluster == cluster) return &rule;
  }
  return nullptr;
}

// ---- Decisions ------------------------------------------------------------------------------------------------------

/// What happens beside naming and typing.
enum ZbEffect : int {
  ZB_NO_EFFECT = 0,
  ZB_LOG_MANUFACTURER,  ///< the log tells the manufacturer
  ZB_LOG_OSRAM,         ///< the log tells that it is this manufacturer
  ZB_STOP               ///< classification ends at once and fails
};

/// Type of a decision that leaves the type as it is.
enum { ZB_KEEP_TYPE = -1 };

/// What a cluster makes of a device for which the tests hold. Of a cluster's rows the first such one decides, and only
/// that one; a cluster may have no row that fits.
struct ZbDecision {
  ZbCluster cluster;
  ZbTest tests[2];   ///< all have to hold
  const char* name;  ///< null: the name stays
  int type;          ///< DevType, 0: undecided again, or ZB_KEEP_TYPE
  ZbEffect effect;
};

static const ZbDecision zbDecisions[] = {
    {ZB_ON_OFF,
     {{ZB_TYPE_IS_NOT, DEVTYPE_BINARY_SWITCH, nullptr}},
     "BinarySwitch",
     DEVTYPE_BINARY_SWITCH,
     ZB_NO_EFFECT},
    {ZB_ON_OFF, {}, "MultiSwitch", DEVTYPE_MULTI_SWITCH, ZB_NO_EFFECT},
    {ZB_LEVEL_CONTROL,
     {{ZB_TYPE_IS_NOT, DEVTYPE_BINARY_SWITCH, nullptr}},
     "MultilevelSwitch",
     DEVTYPE_MULTILEVEL_SWITCH,
     ZB_NO_EFFECT},
    {ZB_LEVEL_CONTROL, {}, "MultilevelSwitchOnOff", DEVTYPE_MULTILEVEL_SWITCH_ON_OFF, ZB_NO_EFFECT},
    {ZB_SHADE_CONFIGURATION, {}, nullptr, DEVTYPE_UNKNOWN, ZB_NO_EFFECT},
    {ZB_DOOR_LOCK, {}, "ZigbeeDoorLock", DEVTYPE_ZIGBEE_DOOR_LOCK, ZB_NO_EFFECT},
    {ZB_WINDOW_COVERING, {}, "Window Covering", DEVTYPE_WINDOW_COVERING, ZB_NO_EFFECT},
    {ZB_PUMP_CONFIGURATION, {}, nullptr, DEVTYPE_UNKNOWN, ZB_NO_EFFECT},
    {ZB_THERMOSTAT, {{ZB_MANUFACTURER_IS, 0, "Zen Within"}}, "Zen Thermostat", DEVTYPE_ZEN_THERMOSTAT, ZB_NO_EFFECT},
    {ZB_THERMOSTAT, {{ZB_MODEL_HAS, 0, "UPIC"}}, "IR Extender", DEVTYPE_IR_EXTENDER, ZB_NO_EFFECT},
    {ZB_THERMOSTAT, {}, "Thermostat", DEVTYPE_THERMOSTAT, ZB_NO_EFFECT},
    {ZB_COLOR_CONTROL,
     {{ZB_TYPE_IS, DEVTYPE_MULTILEVEL_SWITCH_ON_OFF, nullptr}},
     "ColorDimmableLight",
     DEVTYPE_COLOR_DIMMABLE_LIGHT,
     ZB_NO_EFFECT},
    {ZB_COLOR_CONTROL, {}, nullptr, DEVTYPE_UNKNOWN, ZB_NO_EFFECT},
    {ZB_ILLUMINANCE, {}, nullptr, DEVTYPE_UNKNOWN, ZB_NO_EFFECT},
    {ZB_TEMPERATURE,
     {{ZB_MODEL_HAS, 0, "SML0"}, {ZB_TYPE_IS, DEVTYPE_UNKNOWN, nullptr}},
     "ZigbeeTempSensor",
     DEVTYPE_UNKNOWN,
     ZB_NO_EFFECT},  // named as a sensor, but undecided
    {ZB_TEMPERATURE, {{ZB_MODEL_HAS, 0, "SML0"}}, nullptr, DEVTYPE_UNKNOWN, ZB_NO_EFFECT},
    {ZB_TEMPERATURE,
     {{ZB_TYPE_IS, DEVTYPE_UNKNOWN, nullptr}},
     "ZigbeeTempSensor",
     DEVTYPE_ZIGBEE_TEMP_SENSOR,
     ZB_NO_EFFECT},
    {ZB_TEMPERATURE, {{ZB_TYPE_IS, DEVTYPE_OCCUPANCY_SENSOR, nullptr}}, nullptr, ZB_KEEP_TYPE, ZB_NO_EFFECT},
    {ZB_TEMPERATURE, {}, nullptr, DEVTYPE_UNKNOWN, ZB_NO_EFFECT},
    {ZB_PRESSURE, {}, nullptr, DEVTYPE_UNKNOWN, ZB_NO_EFFECT},
    {ZB_FLOW, {}, nullptr, DEVTYPE_UNKNOWN, ZB_NO_EFFECT},
    {ZB_HUMIDITY, {{ZB_TYPE_IS_NOT, DEVTYPE_OCCUPANCY_SENSOR, nullptr}}, nullptr, DEVTYPE_UNKNOWN, ZB_NO_EFFECT},
    {ZB_OCCUPANCY,
     {{ZB_MANUFACTURER_IS, 0, "NYCE"}, {ZB_MODEL_HAS, 0, "3041"}},
     "OccupancySensor",
     DEVTYPE_OCCUPANCY_SENSOR,
     ZB_NO_EFFECT},
    {ZB_METERING, {{ZB_MODEL_HAS, 0, "ESW"}}, nullptr, ZB_KEEP_TYPE, ZB_NO_EFFECT},
    {ZB_METERING, {}, nullptr, DEVTYPE_UNKNOWN, ZB_NO_EFFECT},
    {ZB_ELECTRICAL_MEASUREMENT,
     {{ZB_TYPE_IS_NOT, DEVTYPE_BINARY_SWITCH, nullptr}},
     nullptr,
     ZB_KEEP_TYPE,
     ZB_NO_EFFECT},
    {ZB_ELECTRICAL_MEASUREMENT,
     {{ZB_MAKERS_PLUG, 0, nullptr}},
     "Tobble Plug",
     DEVTYPE_TOBBLE_PLUG,
     ZB_LOG_MANUFACTURER},
    {ZB_ELECTRICAL_MEASUREMENT,
     {{ZB_MANUFACTURER_IS_NOT, 0, "OSRAM"}, {ZB_AC_CHECK_FAILS, 0, nullptr}},
     nullptr,
     ZB_KEEP_TYPE,
     ZB_STOP},
    {ZB_ELECTRICAL_MEASUREMENT,
     {{ZB_MANUFACTURER_IS_NOT, 0, "OSRAM"}},
     "SmartACSwitch",
     DEVTYPE_SMART_AC_SWITCH,
     ZB_NO_EFFECT},
    {ZB_ELECTRICAL_MEASUREMENT, {}, nullptr, ZB_KEEP_TYPE, ZB_LOG_OSRAM},
};

/// The decision of a cluster for a device as it stands, null when nothing is decided.
static inline const ZbDecision* zbFindDecision(int cluster, const ZbDeviceInfo& device) {
  for (const ZbDecision& row : zbDecisions) {
    if (row.cluster == cluster && zbTestHolds(row.tests[0], device) && zbTestHolds(row.tests[1], device)) return &row;
  }
  return nullptr;
}

// ---- IAS zones ------------------------------------------------------------------------------------------------------

/// What becomes of an IAS zone.
enum ZbZoneOutcome : int {
  ZB_ZONE_CAMERA,      ///< it is a camera: zbCameraEntries, name "ZigbeeCamImage", type 67
  ZB_ZONE_IGNORED,     ///< it does nothing
  ZB_ZONE_CLASSIFIED,  ///< its zone type decides: the tables from zbZoneNames on, in their order
};

/// Cluster of a case that holds whichever cluster comes next.
enum { ZB_ANY_CLUSTER = -1 };

struct ZbZoneCase {
  int next;  ///< ZbCluster directly behind the zone (of its entry only, be it the last), or ZB_ANY_CLUSTER
  ZbTest test;
  ZbZoneOutcome outcome;
  bool counted;  ///< whether the log's number of clusters includes the zone
};

static const ZbZoneCase zbZoneCases[] = {
    {ZB_IAS_CAMERA, {}, ZB_ZONE_CAMERA, false},
    {ZB_IAS_ATTACHED, {}, ZB_ZONE_IGNORED, false},
    {ZB_ANY_CLUSTER,
     {ZB_TYPE_IS, DEVTYPE_OCCUPANCY_SENSOR, nullptr},
     ZB_ZONE_IGNORED,
     true},  // decided as an occupancy sensor
    {ZB_ANY_CLUSTER, {}, ZB_ZONE_CLASSIFIED, true},
};

/// The first case that fits a zone that is followed by cluster `next`; there always is one.
static inline const ZbZoneCase& zbFindZoneCase(int next, const ZbDeviceInfo& device) {
  const ZbZoneCase* row = zbZoneCases;
  while (!((row->next == next || row->next == ZB_ANY_CLUSTER) && zbTestHolds(row->test, device))) ++row;
  return *row;
}

/// Device-type name of an IAS zone type (ZigBee Cluster Library, zone types of the IAS Zone cluster).
struct ZbZoneName {
  int zoneType;
  ZbTest test;
  const char* name;
};

/// The first row of the zone type whose test holds; a zone type without a row is an "UnknownDevice".
static const ZbZoneName zbZoneNames[] = {
    {0x0000, {}, "StandardCIE"},
    {0x000D, {}, "MotionSensor"},
    {0x0015, {}, "ContactSwitch"},
    {0x0028, {}, "FireSensor"},
    {0x002A, {}, "WaterSensor"},
    {0x002B, {}, "GasSensor"},
    {0x002C, {}, "PersonalEmergencyDevice"},
    {0x002D, {}, "VibrationOrMovementSensor"},
    {0x010F, {ZB_MODEL_HAS, 0, "RC_ACE"}, "KeyFob"},
    {0x010F, {}, "RemoteControl"},
    {0x0115, {ZB_MANUFACTURER_HAS, 0, "Dravotek Ltd."}, "DravotekButton"},
    {0x0115, {}, "KeyFob"},
    {0x021D, {}, "Keypad"},
    {0x0225, {}, "StandardWarningDevice"},
};

/// The device-type name of a device's zone type; never null.
static inline const char* zbFindZoneName(int zoneType, const ZbDeviceInfo& device) {
  for (const ZbZoneName& row : zbZoneNames) {
    if (row.zoneType == zoneType && zbTestHolds(row.test, device)) return row.name;
  }
  return "UnknownDevice";
}

/// Zones of single models that are not of the type that their zone type stands for. The name stays that of the zone
/// type.
struct ZbZoneTypeException {
  ZbTest test;
  int endpoint;     ///< only a zone on this endpoint
  int type;         ///< DevType that it is of
  const char* log;  ///< line of the log, for a zone of the model on any endpoint
};

static const ZbZoneTypeException zbZoneTypeExceptions[] = {
    {{ZB_MODEL_HAS, 0, "MiniSD"}, 2, DEVTYPE_MOTION_SENSOR, "libTembraAssoc:Mini smoke detector found"},
};

/// The exception that a device is of, null for a device that is as its zone type says.
static inline const ZbZoneTypeException* zbFindZoneTypeException(const ZbDeviceInfo& device) {
  for (const ZbZoneTypeException& row : zbZoneTypeExceptions) {
    if (zbTestHolds(row.test, device)) return &row;
  }
  return nullptr;
}

/// Whether the exception changes the type of a zone on this endpoint.
inline bool zbChangesZoneOn(const ZbZoneTypeException& exception, int endpoint) {
  return exception.endpoint == endpoint;
}

/// Zones whose devices are not named by their device-type name.
struct ZbZoneDisplayName {
  const char* zoneName;  ///< null: any
  ZbTest tests[2];       ///< all have to hold
  const char* displayed;
};

static const ZbZoneDisplayName zbZoneDisplayNames[] = {
    {"WaterSensor", {}, "FloodSensor"},
    {"DravotekButton", {}, "Tembra Tap"},
    {nullptr, {{ZB_MANUFACTURER_IS, 0, "NYCE"}, {ZB_MODEL_HAS, 0, "3014"}}, "Tilt Sensor"},
};

/// The word that names a device of a zone.
static inline const char* zbFindDisplayName(const char* zoneName, const ZbDeviceInfo& device) {
  for (const ZbZoneDisplayName& row : zbZoneDisplayNames) {
    const bool named = row.zoneName == nullptr || std::strcmp(row.zoneName, zoneName) == 0;
    if (named && zbTestHolds(row.tests[0], device) && zbTestHolds(row.tests[1], device)) return row.displayed;
  }
  return zoneName;
}

/// Index entries of an IAS zone, by the device type that its zone type stands for.
struct ZbZoneEntries {
  int type;  ///< DevType, -1: any other
  ZbTest test;
  unsigned char entries[3];  ///< IndexType codes, up to a 0
};

static const ZbZoneEntries zbZoneEntries[] = {
    {DEVTYPE_STANDARD_CIE, {}, {INDEX_BINARY_SENSOR, INDEX_ZONE, INDEX_ALARM}},
    {DEVTYPE_MOTION_SENSOR, {}, {INDEX_MOTION, INDEX_ZONE, INDEX_ALARM}},
    {DEVTYPE_CONTACT_SWITCH, {ZB_MODEL_HAS, 0, "XE01S"}, {INDEX_ZONE}},
    {DEVTYPE_CONTACT_SWITCH, {}, {INDEX_CONTACT, INDEX_ZONE, INDEX_ALARM}},
    {DEVTYPE_FIRE_SENSOR, {}, {INDEX_FIRE, INDEX_ZONE, INDEX_ALARM}},
    {DEVTYPE_WATER_SENSOR, {}, {INDEX_WATER, INDEX_ZONE, INDEX_ALARM}},
    {DEVTYPE_GAS_SENSOR, {}, {INDEX_GAS, INDEX_ZONE, INDEX_ALARM}},
    {DEVTYPE_VIBRATION_SENSOR, {}, {INDEX_VIBRATION, INDEX_ZONE, INDEX_ALARM}},
    {DEVTYPE_KEY_FOB, {}, {INDEX_KEY_FOB_1, INDEX_KEY_FOB_2, INDEX_KEY_FOB_3}},
    {DEVTYPE_STANDARD_WARNING, {}, {INDEX_SIREN, INDEX_ZONE, INDEX_ALARM}},
    {DEVTYPE_DRAVOTEK_BUTTON, {}, {INDEX_BUTTON, INDEX_ZONE, INDEX_ALARM}},
    {-1, {}, {INDEX_ZONE}},
};

/// The first row that fits; there always is one.
static inline const ZbZoneEntries& zbFindZoneEntries(int type, const ZbDeviceInfo& device) {
  const ZbZoneEntries* row = zbZoneEntries;
  while (!((row->type == type || row->type == -1) && zbTestHolds(row->test, device))) ++row;
  return *row;
}

/// Index entries of a camera (ZB_ZONE_CAMERA). Only the first ZB_CAMERA_ENDPOINTS of them get the zone's endpoint; the
/// others keep the endpoint byte that stands there [sic].
static const unsigned char zbCameraEntries[] = {INDEX_MOTION,   INDEX_ZONE,     INDEX_ALARM,   INDEX_CAMERA_1,
                                                INDEX_CAMERA_2, INDEX_CAMERA_3, INDEX_CAMERA_4};
enum { ZB_CAMERA_ENDPOINTS = 3 };

/// What happens to the device of a classified zone once it has its name and type. The first row whose test holds.
struct ZbZoneAfterwards {
  ZbTest test;
  unsigned char entry;  ///< IndexType: once for every entry of it that zbIsScanned; 0: once, whatever the entries are
  int type;             ///< DevType that the device gets, 0: undecided again
  const char* log;      ///< line of the log, each time; null: none
};

static const ZbZoneAfterwards zbZoneAfterwards[] = {
    {{ZB_MODEL_HAS, 0, "MiniSD"}, INDEX_NONE, DEVTYPE_UNKNOWN, nullptr},
    {{ZB_MODEL_HAS, 0, "SZ-PIR04N"},
     INDEX_ILLUMINANCE,
     DEVTYPE_UNKNOWN,
     "libTembraAssoc:Sercomm motion and illuminance found"},
};

/// The row of a device, null when nothing happens afterwards.
static inline const ZbZoneAfterwards* zbFindZoneAfterwards(const ZbDeviceInfo& device) {
  for (const ZbZoneAfterwards& row : zbZoneAfterwards) {
    if (zbTestHolds(row.test, device)) return &row;
  }
  return nullptr;
}

/// Whether ZbZoneAfterwards looks at an entry of the index table, of which `next` will be written next. Entry `next`
/// and entry 0 are looked at, too [sic]: there stand received bytes, of entry 0 the received number of entries.
inline bool zbIsScanned(int entry, int next) { return entry >= 0 && entry <= next; }

#endif
