// Finding a ZigBee device that left. The wait for the database is a step of its own: a receive thread whose
// connection ended while it waited must write nothing more.
#ifndef TEMBRA_REMOVAL_ZIGBEE_DEVICE_H
#define TEMBRA_REMOVAL_ZIGBEE_DEVICE_H

#include <tembra/association.h>

namespace tembra {

/// What zb_removeNode found.
struct ZigbeeLookup {
  int result;    ///< of zb_removeNode
  bool unknown;  ///< the database was read and does not hold the device
};

/// Looks for the device with this address and remembers its name and id.
ZigbeeLookup findZigbeeDevice(TembraAssociation& assoc, unsigned short shortAddress);

}  // namespace tembra

#endif
