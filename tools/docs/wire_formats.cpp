// The offset tables: every record's fields with the offsets and sizes that the compiler gives them.
#include <tembra/assoc.h>

#include <cstddef>
#include <fstream>
#include <span>

#include "docs/pages.h"

namespace {

struct Field {
  std::size_t offset;
  std::size_t size;
  const char* name;
  const char* meaning;
};

struct Record {
  const char* name;
  std::size_t size;
  const char* purpose;
  std::span<const Field> fields;
};

#define FIELD(record, field, meaning) \
  { offsetof(record, field), sizeof(record::field), #field, meaning }
#define RECORD(record, purpose, fields) \
  { #record, sizeof(record), purpose, fields }

constexpr Field kZwNodeInfo[] = {
    FIELD(ZwNodeInfo, nodeId, "Z-Wave node id; 0: no node, 255: failure"),
    FIELD(ZwNodeInfo, commandClasses, "command classes; ended by 0xFF when received, by 0 when handed over"),
    FIELD(ZwNodeInfo, basicClass, "basic device class; 0: none"),
    FIELD(ZwNodeInfo, genericClass, "generic device class"),
    FIELD(ZwNodeInfo, specificClass, "specific device class"),
    FIELD(ZwNodeInfo, values, "value triples (command class, index, instance); ended by command class 0"),
    FIELD(ZwNodeInfo, deviceKind, "int32: 1 ZigBee, 2 Z-Wave"),
    FIELD(ZwNodeInfo, finalType, "int32 device type, as chosen"),
    FIELD(ZwNodeInfo, proposedType, "int32 device type, as classified"),
    FIELD(ZwNodeInfo, name, "device name"),
    FIELD(ZwNodeInfo, location, "device location"),
    FIELD(ZwNodeInfo, requestMark, "255: added, 254: removed"),
    FIELD(ZwNodeInfo, indexes, "index entries (type, instance); ended by type 0"),
    FIELD(ZwNodeInfo, indexesEnd, "end mark of a full table"),
};

constexpr Field kZbDeviceInfo[] = {
    FIELD(ZbDeviceInfo, shortAddress, "uint16 ZigBee network address"),
    FIELD(ZbDeviceInfo, msgCode,
          "status when received, 12 once a leaving device is unknown; when sent 10: added, 2: removed"),
    FIELD(ZbDeviceInfo, clusters, "entries of uint16 cluster, uint16 endpoint; ended by cluster 0xFFFF"),
    FIELD(ZbDeviceInfo, manufacturer, "manufacturer name"),
    FIELD(ZbDeviceInfo, devType, "low byte of the device type; 0: undecided"),
    FIELD(ZbDeviceInfo, zoneType, "uint16 IAS zone type"),
    FIELD(ZbDeviceInfo, acCheckA, "uint16, tested for a SmartACSwitch"),
    FIELD(ZbDeviceInfo, acCheckB, "uint16, tested for a SmartACSwitch"),
    FIELD(ZbDeviceInfo, acCheckC, "uint16, tested for a SmartACSwitch"),
    FIELD(ZbDeviceInfo, productWordA, "uint16, 0x1002: the maker's plug"),
    FIELD(ZbDeviceInfo, productWordB, "uint16, 0x5EC0: the maker's plug"),
    FIELD(ZbDeviceInfo, model, "model identifier"),
    FIELD(ZbDeviceInfo, indexCount, "number of index entries"),
    FIELD(ZbDeviceInfo, indexes, "index entries 1 to 29 (type, endpoint); ended by type 255"),
    FIELD(ZbDeviceInfo, name, "device name"),
    FIELD(ZbDeviceInfo, location, "device location"),
};

constexpr Field kZigbeeCommand[] = {
    FIELD(ZigbeeCommand, command, "command text"),
    FIELD(ZigbeeCommand, argument, "argument text"),
};

constexpr Field kZwaveCommand[] = {
    FIELD(ZwaveCommand, operation, "int32 operation: 1 controller command, 4 cancel, 5 reset"),
    FIELD(ZwaveCommand, controllerCommand, "int32 controller command: 1 add, 4 remove"),
};

constexpr Field kHaNotice[] = {
    FIELD(HaNotice, recordKind, "int32: 0 ZigBee record or text, 2 Z-Wave record"),
    FIELD(HaNotice, record, "ZbDeviceInfo, ZwNodeInfo, or the text \"removeAllDevices\""),
};

constexpr Field kHueCommand[] = {
    FIELD(HueCommand, argument, "lamp or user text"),
    FIELD(HueCommand, bridgeId, "bridge id"),
    FIELD(HueCommand, command, "uint32: 100 add bridge, 105 add lamp, 106 refresh, 109 remove, 114 discover"),
};

constexpr Field kHueAnswer[] = {
    FIELD(HueAnswer, type, "int32 result type"),
    FIELD(HueAnswer, count, "int32 number of entries"),
    FIELD(HueAnswer, entries, "entries of 65 bytes, each a JSON object"),
};

constexpr Field kNestCommand[] = {
    FIELD(NestCommand, command, "uint32: 100 add, 109 remove"),
    FIELD(NestCommand, text, "text of an add"),
};

constexpr Field kNestAnswer[] = {
    FIELD(NestAnswer, command, "int32 command, 100 to 124"),
    FIELD(NestAnswer, status, "int32 status"),
    FIELD(NestAnswer, value, "int32 value"),
};

constexpr Field kDeviceRecord[] = {
    FIELD(DeviceRecord, id, "int32 device id"),
    FIELD(DeviceRecord, name, "device name"),
    FIELD(DeviceRecord, zwaveNode, "uint32 Z-Wave node id"),
    FIELD(DeviceRecord, zigbeeAddress, "uint32 ZigBee short address"),
    FIELD(DeviceRecord, radioKind, "int32: 2 Z-Wave, 3 IP device"),
    FIELD(DeviceRecord, typeName, "device-type name"),
};

constexpr Field kIndexRecord[] = {
    FIELD(IndexRecord, value, "value of the slot as text"),
};

constexpr Field kAssocEvent[] = {
    FIELD(AssocEvent, code, "int32 event code"),
    FIELD(AssocEvent, source, "int32: 1 ZigBee, 2 Z-Wave, 3 Hue, 4 Nest"),
    FIELD(AssocEvent, payload, "by event code"),
};

constexpr Field kTimeoutReport[] = {
    FIELD(TimeoutReport, lastEventCode, "int32 last progress code"),
    FIELD(TimeoutReport, json, "JSON text"),
};

constexpr Field kDeviceReport[] = {
    FIELD(DeviceReport, name, "device name"),
    FIELD(DeviceReport, location, "device location"),
    FIELD(DeviceReport, removedName, "name of the removed device"),
    FIELD(DeviceReport, removedId, "int32 id of the removed device"),
    FIELD(DeviceReport, type, "int32 device type"),
    FIELD(DeviceReport, status, "int32 ZigBee status"),
    FIELD(DeviceReport, failure, "0 in the ZigBee failure event"),
    FIELD(DeviceReport, subTypes, "int32 device types to choose from; ended by 0"),
    FIELD(DeviceReport, json, "JSON text"),
};

constexpr Field kHueBridgeList[] = {
    FIELD(HueBridgeList, mac, "25 MAC texts of 30 bytes"),
    FIELD(HueBridgeList, address, "25 IP address texts of 50 bytes"),
    FIELD(HueBridgeList, count, "int32 number of bridges"),
};

constexpr Record kRecords[] = {
    RECORD(ZigbeeCommand, "library to ZigBee server", kZigbeeCommand),
    RECORD(ZwaveCommand, "library to Z-Wave server", kZwaveCommand),
    RECORD(HueCommand, "library to Hue server", kHueCommand),
    RECORD(NestCommand, "library to Nest server", kNestCommand),
    RECORD(HaNotice, "library to HA server, association port", kHaNotice),
    RECORD(ZwNodeInfo, "Z-Wave server to library, and inside an HA notice", kZwNodeInfo),
    RECORD(ZbDeviceInfo, "ZigBee server to library, and inside an HA notice", kZbDeviceInfo),
    RECORD(HueAnswer, "Hue server to library", kHueAnswer),
    RECORD(NestAnswer, "Nest server to library", kNestAnswer),
    RECORD(DeviceRecord, "device database, key: device id", kDeviceRecord),
    RECORD(IndexRecord, "device database, key: device id, point, index number", kIndexRecord),
    RECORD(AssocEvent, "library to callback", kAssocEvent),
    RECORD(TimeoutReport, "payload of a time-out event", kTimeoutReport),
    RECORD(DeviceReport, "payload of a device event", kDeviceReport),
    RECORD(HueBridgeList, "payload of a bridge list event", kHueBridgeList),
};

void writeRecord(std::ostream& out, const Record& record) {
  out << "\n## " << record.name << ", " << record.size << " bytes\n\n" << record.purpose << "\n\n";
  out << "| Offset | Size | Field | Meaning |\n|---|---|---|---|\n";
  for (const Field& field : record.fields) {
    out << "| " << field.offset << " | " << field.size << " | `" << field.name << "` | " << field.meaning << " |\n";
  }
}

}  // namespace

bool docs::writeWireFormats(const std::filesystem::path& path) {
  std::ofstream out(path);
  out << "# Wire formats\n\n"
         "Made by `make-docs` from the records of `<tembra/records.h>` and `<tembra/events.h>`; do not edit.\n\n"
         "All numbers are little-endian. Texts end with a NUL unless they fill their field. Bytes that no table names\n"
         "are not read by the library. They are zero in the commands it builds; in a record that it passes on they\n"
         "stay as received.\n";
  for (const Record& record : kRecords) writeRecord(out, record);
  return static_cast<bool>(out.flush());
}
