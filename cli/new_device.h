// The second half of an add: the device has joined and gets its type, its name and its place.
#ifndef TEMBRA_CLI_NEW_DEVICE_H
#define TEMBRA_CLI_NEW_DEVICE_H

#include <optional>
#include <string>

#include "operation.h"

namespace tembra::cli {

/// What the command line says of the device; empty where it says nothing.
struct Wishes {
  std::optional<DevType> type;
  std::string name;
  std::string location;
};

/// Asks for what neither the command line nor a default tells, and hands the device to the home-automation server.
/// `created` is the EVENT_SELECT_TYPE or EVENT_CREATED of the device. Throws Failure.
void finishDevice(Operation& operation, const HeardEvent& created, const Wishes& wishes);

}  // namespace tembra::cli

#endif
