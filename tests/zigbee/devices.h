// The devices that several tests let join.
#ifndef TEMBRA_TESTS_ZIGBEE_DEVICES_H
#define TEMBRA_TESTS_ZIGBEE_DEVICES_H

#include "kit/zigbee_device.h"

constexpr unsigned short kLamp = 0x1234;

// Each as it answers when it is known.
const kit::ZigbeeDevice kContact = kit::ZigbeeDevice(kLamp).status(10).zone(0x0015).cluster(0x0500);
const kit::ZigbeeDevice kCie = kit::ZigbeeDevice(kLamp).status(10).zone(0x0000).cluster(0x0500);
const kit::ZigbeeDevice kMeterWithoutValues = kit::ZigbeeDevice(kLamp).status(10).clusters({0x0006, 0x0B04});

#endif
