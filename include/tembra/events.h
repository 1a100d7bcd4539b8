// What a front end hears: AssocEvent, its codes, and the payloads that some codes carry.
#ifndef TEMBRA_EVENTS_H
#define TEMBRA_EVENTS_H

#include <tembra/records.h>
#include <tembra/vocabulary.h>

/// Codes of AssocEvent. Progress codes (ADDING, GETTING_INFO, SELECT_TYPE, CREATED, HUE_BRIDGES) are remembered in
/// TembraAssociation::lastEventCode; every other code clears it.
enum AssocEventCode : int {
  EVENT_TIMEOUT = 2,           ///< an operation timed out; payload TimeoutReport; source not written
  EVENT_ADDING = 3,            ///< a device answered the add; DeviceReport from ZigBee, none from Z-Wave
  EVENT_ALREADY_ADDED = 4,     ///< Z-Wave: the node is already in the device database
  EVENT_GETTING_INFO = 5,      ///< the device's description is being read; DeviceReport from ZigBee
  EVENT_SELECT_TYPE = 6,       ///< device created, the user may choose its type; DeviceReport with subTypes
  EVENT_CREATED = 7,           ///< device created, naming is next; DeviceReport with name, location, type
  EVENT_ADD_FAILED = 9,        ///< the add failed; DeviceReport from ZigBee, none from Z-Wave
  EVENT_REMOVED = 11,          ///< removal done (ZigBee) or started (Z-Wave); DeviceReport with removedName, removedId
  EVENT_REMOVED_UNKNOWN = 12,  ///< removal answered for a device that is not in the database
  EVENT_HUE_BRIDGES = 21,      ///< Hue bridges found; payload HueBridgeList
  EVENT_HUE_DONE = 22,         ///< HUE_DONE; JSON text
  EVENT_HUE_DONE_2 = 23,       ///< HUE_DONE_2; JSON text
  EVENT_HUE_ADDED = 25,        ///< Hue bridge added; JSON text
  EVENT_HUE_BUTTON = 26,       ///< Hue link button not pressed; JSON text
  EVENT_HUE_NO_BRIDGE = 27,    ///< Hue bridge not found; JSON text
  EVENT_HUE_UNKNOWN_BRIDGE = 28,  ///< bridge not found; JSON text
  EVENT_HUE_BULB_ADDED = 29,      ///< Hue bulb added; JSON text
  EVENT_HUE_FAILED = 30,          ///< Hue add failed; JSON text; source not written
  EVENT_NEST_41 = 41,             ///< Nest command 121
  EVENT_NEST_42 = 42,             ///< Nest command 123
  EVENT_NEST_43 = 43,             ///< Nest command 122
  EVENT_NEST_44 = 44,             ///< Nest command 100; payload: the 12 received bytes
  EVENT_NEST_45 = 45,             ///< Nest command 124, status 0
  EVENT_NEST_46 = 46              ///< Nest command 124, status -1
};

/// The record handed to the callback. It is valid only during the call: copy what you need before returning.
///
/// Where a code carries no payload, and in bytes that a payload does not define, `payload` holds whatever the
/// library's buffer held before. EVENT_TIMEOUT and EVENT_HUE_FAILED leave `source` as it was, too.
struct AssocEvent {
  int code;                     ///< AssocEventCode
  int source;                   ///< the server the event concerns, in ServerType numbering
  unsigned char payload[4096];  ///< by event code
};
static_assert(sizeof(AssocEvent) == 4104, "an event is 4104 bytes");
TEMBRA_FIELD_AT(AssocEvent, code, 0);
TEMBRA_FIELD_AT(AssocEvent, source, 4);
TEMBRA_FIELD_AT(AssocEvent, payload, 8);

/// Payload of EVENT_TIMEOUT, 1028 bytes.
struct TimeoutReport {
  int lastEventCode;  ///< last progress code before the time-out, 0: none
  char json[1024];    ///< the "TimeoutReached" JSON text
};
static_assert(sizeof(TimeoutReport) == 1028, "a time-out report is 1028 bytes");
TEMBRA_FIELD_AT(TimeoutReport, lastEventCode, 0);
TEMBRA_FIELD_AT(TimeoutReport, json, 4);

/// Payload of the device events, 1788 bytes. Fields that an event does not define keep what earlier events left.
struct DeviceReport {
  char name[180];         ///< device name
  char location[180];     ///< device location; "Default" in EVENT_CREATED
  char removedName[180];  ///< name of the device being removed
  int removedId;          ///< id of the device being removed
  /// DevType. In EVENT_SELECT_TYPE: what the device was classified as. In EVENT_CREATED: the object's devType, which is
  /// the chosen type when setDevType sent the event, and the classified type of a ZigBee device. Classifying a Z-Wave
  /// node does not write devType. There it is what setDevType, setDevType2 or an earlier ZigBee add left, 0 at first:
  /// take the node's type from TembraAssociation::classifiedType. Once the callback of EVENT_SELECT_TYPE has returned,
  /// devType also becomes the final type of the device.
  int type;
  unsigned char at548[8];
  int status;             ///< ZigBee status byte of the answer
  unsigned char failure;  ///< 0, written by the ZigBee failure event only
  unsigned char at561[3];
  DevType subTypes[50];  ///< the types the user may choose instead, up to a 0
  char json[1024];       ///< JSON text of the ZigBee progress events
};
static_assert(sizeof(DeviceReport) == 1788, "a device report is 1788 bytes");
TEMBRA_FIELD_AT(DeviceReport, name, 0);
TEMBRA_FIELD_AT(DeviceReport, location, 180);
TEMBRA_FIELD_AT(DeviceReport, removedName, 360);
TEMBRA_FIELD_AT(DeviceReport, removedId, 540);
TEMBRA_FIELD_AT(DeviceReport, type, 544);
TEMBRA_FIELD_AT(DeviceReport, at548, 548);
TEMBRA_FIELD_AT(DeviceReport, status, 556);
TEMBRA_FIELD_AT(DeviceReport, failure, 560);
TEMBRA_FIELD_AT(DeviceReport, at561, 561);
TEMBRA_FIELD_AT(DeviceReport, subTypes, 564);
TEMBRA_FIELD_AT(DeviceReport, json, 764);

/// Payload of EVENT_HUE_BRIDGES, 3256 bytes: slot i of each table is one bridge.
struct HueBridgeList {
  char mac[25][30];      ///< MAC texts
  char address[25][50];  ///< IP address texts
  unsigned char at2000[1252];
  int count;  ///< number of slots filled
};
static_assert(sizeof(HueBridgeList) == 3256, "a bridge list is 3256 bytes");
TEMBRA_FIELD_AT(HueBridgeList, mac, 0);
TEMBRA_FIELD_AT(HueBridgeList, address, 750);
TEMBRA_FIELD_AT(HueBridgeList, at2000, 2000);
TEMBRA_FIELD_AT(HueBridgeList, count, 3252);

#endif
