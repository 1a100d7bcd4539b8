// The ZigBee devices that exist in the simulated home, read from a data file.
#ifndef TEMBRA_SIM_ZIGBEE_CATALOGUE_H
#define TEMBRA_SIM_ZIGBEE_CATALOGUE_H

#include <array>
#include <filesystem>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

#include "sim/radio/catalogue.h"
#include "tembra/records.h"

namespace tembra::sim {

struct ZigbeeDevice {
  std::string label;
  std::string description;
  std::string manufacturer;
  std::string model;
  unsigned short zoneType;
  std::vector<ZbClusterEntry> clusters;
  std::array<unsigned short, 3> acChecks;  ///< words A, B and C of a metering switch
  std::array<unsigned short, 2> productWords;
};

class ZigbeeCatalogue : public Catalogue<ZigbeeDevice> {
 public:
  /// Reads FOLDER/zigbee.json; throws one sentence that says what is wrong where.
  static ZigbeeCatalogue load(const std::filesystem::path& folder);

  /// Adds an entry of such a file. Throws as `load` does, and when there is a device of its label.
  void addEntry(const nlohmann::json& entry);
};

}  // namespace tembra::sim

#endif
