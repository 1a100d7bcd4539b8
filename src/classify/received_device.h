// Creating and finding a device that a radio told of, with the wait for the database apart from what follows it: a
// receive thread whose connection ended while it waited must write nothing more.
#ifndef TEMBRA_CLASSIFY_RECEIVED_DEVICE_H
#define TEMBRA_CLASSIFY_RECEIVED_DEVICE_H

#include <tembra/association.h>

namespace tembra {

/// What ZW_createDeviceType does once DevId is known. False when the node has no basic class.
bool classifyNode(TembraAssociation& assoc);

/// What zb_createAnyDevice does once DevId is known. @return as validate_DeviceType.
int classifyZigbeeDevice(TembraAssociation& assoc);

/// What zb_removeNode found.
struct ZigbeeLookup {
  int result;    ///< of zb_removeNode
  bool unknown;  ///< the database was read and does not hold the device
};

/// Looks for the device with this address and remembers its name and id.
ZigbeeLookup findZigbeeDevice(TembraAssociation& assoc, unsigned short shortAddress);

}  // namespace tembra

#endif
