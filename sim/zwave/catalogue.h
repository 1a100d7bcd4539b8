// The Z-Wave devices that exist in the simulated home, read from a data file.
#ifndef TEMBRA_SIM_ZWAVE_CATALOGUE_H
#define TEMBRA_SIM_ZWAVE_CATALOGUE_H

#include <filesystem>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

#include "sim/radio/catalogue.h"
#include "tembra/records.h"

namespace tembra::sim {

struct ZwaveDevice {
  std::string label;
  std::string description;
  unsigned char basicClass;
  unsigned char genericClass;
  unsigned char specificClass;
  std::vector<unsigned char> commandClasses;
  std::vector<ZwValueTriple> values;
};

class ZwaveCatalogue : public Catalogue<ZwaveDevice> {
 public:
  /// Reads FOLDER/zwave.json; throws one sentence that says what is wrong where.
  static ZwaveCatalogue load(const std::filesystem::path& folder);

  /// Adds an entry of such a file. Throws as `load` does, and when there is a device of its label.
  void addEntry(const nlohmann::json& entry);
};

}  // namespace tembra::sim

#endif
