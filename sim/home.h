// What people can press in the simulated home.
#ifndef TEMBRA_SIM_HOME_H
#define TEMBRA_SIM_HOME_H

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "sim/zigbee/catalogue.h"
#include "sim/zwave/catalogue.h"

namespace tembra::sim {

/// The link button of the Hue bridges.
inline constexpr std::string_view kHueButton = "hue-button";

struct Home {
  ZwaveCatalogue zwave;
  ZigbeeCatalogue zigbee;

  /// Reads the catalogues in a folder, then the files that add to them; throws one sentence that says what is wrong
  /// where.
  static Home load(const std::filesystem::path& folder, const std::vector<std::filesystem::path>& files = {});

  /// Adds the devices of a file, of either radio. A device with a label that is there already replaces the other one.
  void add(const std::filesystem::path& file);

  bool has(std::string_view name) const;
  std::string labels() const;
};

}  // namespace tembra::sim

#endif
