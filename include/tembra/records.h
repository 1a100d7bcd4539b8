// The records that travel: between the daemons and this library as datagrams, and in the device database as values.
//
// Every record is a plain struct with the exact bytes, little-endian, checked below it at compile time. Bytes that
// nobody reads are named by their offset. A text that fills its field has no NUL.
#ifndef TEMBRA_RECORDS_H
#define TEMBRA_RECORDS_H

#include <cstddef>

static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__, "the records travel in little-endian byte order");
static_assert(sizeof(int) == 4 && sizeof(short) == 2, "the records count on 32-bit int and 16-bit short");

#define TEMBRA_FIELD_AT(record, field, offset) \
  static_assert(offsetof(record, field) == (offset), #record "::" #field " stands at " #offset)

/// One value that a Z-Wave node offers (three bytes on the wire).
struct ZwValueTriple {
  unsigned char commandClass;  ///< Z-Wave command class (Z-Wave standard SDS13781); 0 ends the list
  unsigned char index;         ///< index of the value within its command class
  unsigned char instance;      ///< channel (instance) of the node that carries the value
};
static_assert(sizeof(ZwValueTriple) == 3, "a value triple is three bytes");

/// One entry of a Z-Wave index table (two bytes on the wire).
struct ZwIndexEntry {
  unsigned char type;      ///< IndexType; 0 ends the table
  unsigned char instance;  ///< instance of the value that the slot shows
};
static_assert(sizeof(ZwIndexEntry) == 2, "an index entry is two bytes");

/// The Z-Wave node block, 1036 bytes: from the Z-Wave server as received, to the HA server as finished.
struct ZwNodeInfo {
  unsigned char nodeId;              ///< Z-Wave node id, or a NodeNumber
  unsigned char commandClasses[53];  ///< supported command classes; ends with 0xFF when received, with 0 when finished
  unsigned char basicClass;          ///< Z-Wave basic device class; 0: the node has none
  unsigned char genericClass;        ///< Z-Wave generic device class
  unsigned char specificClass;       ///< Z-Wave specific device class
  ZwValueTriple values[181];         ///< the values that the node offers, up to one of command class 0
  int deviceKind;                    ///< DeviceKind of the device being added
  int finalType;                     ///< DevType that the front end chose
  int proposedType;                  ///< DevType that classification proposes
  char name[180];                    ///< device name
  char location[180];                ///< device location
  unsigned char requestMark;         ///< RequestMark
  ZwIndexEntry indexes[31];          ///< value slots of the device, up to one of type 0
  unsigned char indexesEnd;          ///< type byte of entry 31, whose instance has no room: an end mark
};
static_assert(sizeof(ZwNodeInfo) == 1036, "a Z-Wave node block is 1036 bytes");
TEMBRA_FIELD_AT(ZwNodeInfo, nodeId, 0);
TEMBRA_FIELD_AT(ZwNodeInfo, commandClasses, 1);
TEMBRA_FIELD_AT(ZwNodeInfo, basicClass, 54);
TEMBRA_FIELD_AT(ZwNodeInfo, genericClass, 55);
TEMBRA_FIELD_AT(ZwNodeInfo, specificClass, 56);
TEMBRA_FIELD_AT(ZwNodeInfo, values, 57);
TEMBRA_FIELD_AT(ZwNodeInfo, deviceKind, 600);
TEMBRA_FIELD_AT(ZwNodeInfo, finalType, 604);
TEMBRA_FIELD_AT(ZwNodeInfo, proposedType, 608);
TEMBRA_FIELD_AT(ZwNodeInfo, name, 612);
TEMBRA_FIELD_AT(ZwNodeInfo, location, 792);
TEMBRA_FIELD_AT(ZwNodeInfo, requestMark, 972);
TEMBRA_FIELD_AT(ZwNodeInfo, indexes, 973);
TEMBRA_FIELD_AT(ZwNodeInfo, indexesEnd, 1035);

/// One ZigBee cluster that a device offers.
struct ZbClusterEntry {
  unsigned short cluster;   ///< ZigBee cluster identifier (ZigBee Cluster Library); 0xFFFF ends the list
  unsigned short endpoint;  ///< endpoint that carries the cluster
};
static_assert(sizeof(ZbClusterEntry) == 4, "a cluster entry is four bytes");

/// One entry of a ZigBee index table.
struct ZbIndexEntry {
  unsigned char type;      ///< IndexType; 255 ends the table
  unsigned char endpoint;  ///< low byte of the endpoint that carries the value
};
static_assert(sizeof(ZbIndexEntry) == 2, "an index entry is two bytes");

/// The ZigBee device description, 444 bytes: from the ZigBee server as received, to the HA server as finished.
struct ZbDeviceInfo {
  unsigned short shortAddress;  ///< ZigBee network address of the device
  unsigned char at2[8];
  /// ZigbeeStatus when received, ZigbeeNotice when sent. ZIGBEE_REMOVED_UNKNOWN is written when a leaving device is not
  /// in the database, and stays until the record is received or handed over anew.
  unsigned char msgCode;
  unsigned char at11;
  ZbClusterEntry clusters[30];  ///< the clusters of the device, up to one of id 0xFFFF
  char manufacturer[80];        ///< manufacturer name
  unsigned char devType;        ///< low byte of the DevType; 0: not decided
  unsigned char at213;
  unsigned short zoneType;  ///< IAS zone type (ZigBee Cluster Library, IAS Zone cluster)
  unsigned char at216[12];
  unsigned short acCheckA;  ///< 0: a metering switch is no SmartACSwitch
  unsigned char at230[2];
  unsigned short acCheckB;  ///< 0 together with acCheckC: no SmartACSwitch
  unsigned char at234[6];
  unsigned short acCheckC;  ///< see acCheckB
  unsigned char at242[50];
  unsigned short productWordA;  ///< 0x1002 for the plug of the router's own maker
  unsigned short productWordB;  ///< 0x5EC0 for the plug of the router's own maker
  char model[22];               ///< model identifier
  unsigned char indexCount;     ///< number of index entries, which are entries 1 to indexCount
  unsigned char at319;          ///< endpoint byte of an entry 0 that does not exist
  ZbIndexEntry indexes[29];     ///< index entries 1 to 29: entry n at offset 318 + 2n
  char name[32];                ///< device name; a longer one runs into the location
  char location[34];            ///< device location, up to the end of the record
};
static_assert(sizeof(ZbDeviceInfo) == 444, "a ZigBee device description is 444 bytes");
TEMBRA_FIELD_AT(ZbDeviceInfo, shortAddress, 0);
TEMBRA_FIELD_AT(ZbDeviceInfo, at2, 2);
TEMBRA_FIELD_AT(ZbDeviceInfo, msgCode, 10);
TEMBRA_FIELD_AT(ZbDeviceInfo, at11, 11);
TEMBRA_FIELD_AT(ZbDeviceInfo, clusters, 12);
TEMBRA_FIELD_AT(ZbDeviceInfo, manufacturer, 132);
TEMBRA_FIELD_AT(ZbDeviceInfo, devType, 212);
TEMBRA_FIELD_AT(ZbDeviceInfo, at213, 213);
TEMBRA_FIELD_AT(ZbDeviceInfo, zoneType, 214);
TEMBRA_FIELD_AT(ZbDeviceInfo, at216, 216);
TEMBRA_FIELD_AT(ZbDeviceInfo, acCheckA, 228);
TEMBRA_FIELD_AT(ZbDeviceInfo, at230, 230);
TEMBRA_FIELD_AT(ZbDeviceInfo, acCheckB, 232);
TEMBRA_FIELD_AT(ZbDeviceInfo, at234, 234);
TEMBRA_FIELD_AT(ZbDeviceInfo, acCheckC, 240);
TEMBRA_FIELD_AT(ZbDeviceInfo, at242, 242);
TEMBRA_FIELD_AT(ZbDeviceInfo, productWordA, 292);
TEMBRA_FIELD_AT(ZbDeviceInfo, productWordB, 294);
TEMBRA_FIELD_AT(ZbDeviceInfo, model, 296);
TEMBRA_FIELD_AT(ZbDeviceInfo, indexCount, 318);
TEMBRA_FIELD_AT(ZbDeviceInfo, at319, 319);
TEMBRA_FIELD_AT(ZbDeviceInfo, indexes, 320);
TEMBRA_FIELD_AT(ZbDeviceInfo, name, 378);
TEMBRA_FIELD_AT(ZbDeviceInfo, location, 410);

/// A device of the device database, as the HA server writes it: at most 512 bytes, keyed by the device id in decimal.
struct DeviceRecord {
  int id;                      ///< device id, also the text of the key
  char name[360];              ///< device name
  unsigned int zwaveNode;      ///< Z-Wave node id; only its low byte is compared
  unsigned int zigbeeAddress;  ///< ZigBee short address, zero-extended
  unsigned char at372[28];
  int radioKind;  ///< RadioKind; other values are other radios
  unsigned char at404[36];
  char typeName[72];  ///< DevType name
};
static_assert(sizeof(DeviceRecord) == 512, "a device record is at most 512 bytes");
TEMBRA_FIELD_AT(DeviceRecord, id, 0);
TEMBRA_FIELD_AT(DeviceRecord, name, 4);
TEMBRA_FIELD_AT(DeviceRecord, zwaveNode, 364);
TEMBRA_FIELD_AT(DeviceRecord, zigbeeAddress, 368);
TEMBRA_FIELD_AT(DeviceRecord, at372, 372);
TEMBRA_FIELD_AT(DeviceRecord, radioKind, 400);
TEMBRA_FIELD_AT(DeviceRecord, at404, 404);
TEMBRA_FIELD_AT(DeviceRecord, typeName, 440);

/// One value slot of a device in the device database: at most 92 bytes, keyed "<device id>.<index number>".
struct IndexRecord {
  unsigned char at0[34];
  char value[58];  ///< current value of the slot as text
};
static_assert(sizeof(IndexRecord) == 92, "an index record is at most 92 bytes");
TEMBRA_FIELD_AT(IndexRecord, at0, 0);
TEMBRA_FIELD_AT(IndexRecord, value, 34);

/// Command to the ZigBee server, 320 bytes.
struct ZigbeeCommand {
  char command[180];   ///< command text
  char argument[140];  ///< argument text
};
static_assert(sizeof(ZigbeeCommand) == 320, "a ZigBee command is 320 bytes");
TEMBRA_FIELD_AT(ZigbeeCommand, command, 0);
TEMBRA_FIELD_AT(ZigbeeCommand, argument, 180);

/// Command to the Z-Wave server, 236 bytes; what is not named here is that server's own and zero.
struct ZwaveCommand {
  unsigned char at0[192];
  int operation;  ///< ozw_OperationCode
  unsigned char at196[16];
  int controllerCommand;  ///< ozw_ControllerCommand
  unsigned char at216[20];
};
static_assert(sizeof(ZwaveCommand) == 236, "a Z-Wave command is 236 bytes");
TEMBRA_FIELD_AT(ZwaveCommand, at0, 0);
TEMBRA_FIELD_AT(ZwaveCommand, operation, 192);
TEMBRA_FIELD_AT(ZwaveCommand, at196, 196);
TEMBRA_FIELD_AT(ZwaveCommand, controllerCommand, 212);
TEMBRA_FIELD_AT(ZwaveCommand, at216, 216);

/// Notice to the HA server, 4100 bytes: a record, or the text "removeAllDevices" (with kind 0), and zeros behind it.
struct HaNotice {
  int recordKind;              ///< RecordKind
  unsigned char record[4096];  ///< a ZbDeviceInfo, a ZwNodeInfo or a text
};
static_assert(sizeof(HaNotice) == 4100, "an HA notice is 4100 bytes");
TEMBRA_FIELD_AT(HaNotice, recordKind, 0);
TEMBRA_FIELD_AT(HaNotice, record, 4);

/// Command to the Hue server, 304 bytes.
struct HueCommand {
  unsigned char at0[120];
  char argument[50];     ///< text: the name of a bulb, or of a user
  char bridgeId[50];     ///< bridge id, see RevertHueMac
  unsigned int command;  ///< HueCommandCode
  unsigned char at224[80];
};
static_assert(sizeof(HueCommand) == 304, "a Hue command is 304 bytes");
TEMBRA_FIELD_AT(HueCommand, at0, 0);
TEMBRA_FIELD_AT(HueCommand, argument, 120);
TEMBRA_FIELD_AT(HueCommand, bridgeId, 170);
TEMBRA_FIELD_AT(HueCommand, command, 220);
TEMBRA_FIELD_AT(HueCommand, at224, 224);

/// One bridge of a Hue answer: a JSON object with the members "id" and "internalipaddress".
struct HueAnswerEntry {
  char json[65];
};
static_assert(sizeof(HueAnswerEntry) == 65, "an entry is 65 bytes");

/// Answer of the Hue server, 3260 bytes.
struct HueAnswer {
  int type;                    ///< HueResultType
  int count;                   ///< number of entries
  HueAnswerEntry entries[50];  ///< bridges, for HUE_BRIDGES_FOUND
  unsigned char at3258[2];
};
static_assert(sizeof(HueAnswer) == 3260, "a Hue answer is 3260 bytes");
TEMBRA_FIELD_AT(HueAnswer, type, 0);
TEMBRA_FIELD_AT(HueAnswer, count, 4);
TEMBRA_FIELD_AT(HueAnswer, entries, 8);
TEMBRA_FIELD_AT(HueAnswer, at3258, 3258);

/// Command to the Nest server, 256 bytes.
struct NestCommand {
  int at0;
  unsigned int command;  ///< NestCommandCode
  char text[248];        ///< authorisation code of NEST_LINK
};
static_assert(sizeof(NestCommand) == 256, "a Nest command is 256 bytes");
TEMBRA_FIELD_AT(NestCommand, at0, 0);
TEMBRA_FIELD_AT(NestCommand, command, 4);
TEMBRA_FIELD_AT(NestCommand, text, 8);

/// Answer of the Nest server, 12 bytes.
struct NestAnswer {
  int command;  ///< NestAnswerCode
  int status;   ///< decides the event of NEST_ANSWER_124: 0 or -1
  int value;    ///< passed on with the event of NEST_ANSWER_100
};
static_assert(sizeof(NestAnswer) == 12, "a Nest answer is 12 bytes");
TEMBRA_FIELD_AT(NestAnswer, command, 0);
TEMBRA_FIELD_AT(NestAnswer, status, 4);
TEMBRA_FIELD_AT(NestAnswer, value, 8);

#endif
