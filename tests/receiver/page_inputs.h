// Inputs that meet the conditions of docs/state-machine.md.
#ifndef TEMBRA_TESTS_RECEIVER_PAGE_INPUTS_H
#define TEMBRA_TESTS_RECEIVER_PAGE_INPUTS_H

#include <functional>
#include <string>
#include <vector>

#include "kit/router.h"

/// What happens while the library waits with this time-out.
using Input = std::function<void(kit::Router&, int timeout)>;

/// The Z-Wave node and the ZigBee address that fillHome puts into the device database.
constexpr unsigned char kKnownNode = 5;
constexpr unsigned short kKnownAddress = 0x1234;
constexpr unsigned char kUnknownNode = 77;
constexpr unsigned short kUnknownAddress = 0x4321;

void fillHome(kit::Router& router);

kit::Node nodeWithSubTypes();
kit::Node nodeWithoutSubTypes();
kit::ZigbeeDevice deviceWithSubTypes();
kit::ZigbeeDevice deviceWithoutSubTypes();

/// The inputs that meet a condition of that section; none for a condition that is not known.
std::vector<Input> inputsOf(const std::string& section, const std::string& condition);

#endif
