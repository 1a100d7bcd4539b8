// The Z-Wave devices that exist in the simulated home, read from a data file.
#ifndef TEMBRA_SIM_ZWAVE_CATALOGUE_H
#define TEMBRA_SIM_ZWAVE_CATALOGUE_H

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

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

class ZwaveCatalogue {
 public:
  /// Reads FOLDER/zwave.json; throws one sentence that says what is wrong where.
  static ZwaveCatalogue load(const std::filesystem::path& folder);

  /// The device called `name`, which is a label or a label and a number ("dimmer#2", a second dimmer). Null: none is.
  const ZwaveDevice* find(std::string_view name) const;
  std::string labels() const;
  const std::vector<ZwaveDevice>& devices() const { return devices_; }

 private:
  void add(ZwaveDevice device);

  std::vector<ZwaveDevice> devices_;
};

}  // namespace tembra::sim

#endif
