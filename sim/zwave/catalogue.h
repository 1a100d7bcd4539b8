// The Z-Wave devices that exist in the simulated home, read from a data file.
#ifndef TEMBRA_SIM_ZWAVE_CATALOGUE_H
#define TEMBRA_SIM_ZWAVE_CATALOGUE_H

#include <filesystem>
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
};

}  // namespace tembra::sim

#endif
