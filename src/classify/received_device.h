// Creating a device that a radio reported. The wait for the database is a step of its own: a receive thread whose
// connection ended meanwhile must write nothing more.
#ifndef TEMBRA_CLASSIFY_RECEIVED_DEVICE_H
#define TEMBRA_CLASSIFY_RECEIVED_DEVICE_H

#include <tembra/association.h>

namespace tembra {

/// What ZW_createDeviceType does once DevId is known. False when the node has no basic class.
bool classifyNode(TembraAssociation& assoc);

/// What zb_createAnyDevice does once DevId is known. @return as validate_DeviceType.
int classifyZigbeeDevice(TembraAssociation& assoc);

}  // namespace tembra

#endif
