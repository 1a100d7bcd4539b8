// The second half of an add: the device has joined and gets its type, its name and its place.
#ifndef TEMBRA_CLI_NEW_DEVICE_H
#define TEMBRA_CLI_NEW_DEVICE_H

#include <string>

#include "cli/dialogue/dialogue.h"

namespace tembra::cli {

/// What the command line says of the device; 0 and empty where it says nothing.
struct Wishes {
  int type = 0;
  std::string name;
  std::string place;
  bool isKnown = false;  ///< the device was in the list before, and keeps its name
};

/// Asks for what neither the command line nor a default tells, and hands the device over. Throws Failure.
void finishDevice(Dialogue& dialogue, const Found& found, const Wishes& wishes);

}  // namespace tembra::cli

#endif
