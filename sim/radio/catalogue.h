// The devices of one radio that exist in the simulated home.
#ifndef TEMBRA_SIM_RADIO_CATALOGUE_H
#define TEMBRA_SIM_RADIO_CATALOGUE_H

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "sim/radio/catalogue_file.h"

namespace tembra::sim {

/// `Device` has a `label`, which is unique.
template <typename Device>
class Catalogue {
 public:
  void add(Device device) {
    require(find(device.label) == nullptr, "there are two devices called " + device.label);
    devices_.push_back(std::move(device));
  }

  /// The same, in place of the device that has its label.
  void put(Device device) {
    remove(device.label);
    devices_.push_back(std::move(device));
  }

  void remove(const std::string& label) {
    std::erase_if(devices_, [&label](const Device& entry) { return entry.label == label; });
  }

  /// The device called `name`, see labelIn. Null: none is.
  const Device* find(std::string_view name) const {
    const std::string_view label = labelIn(name);
    const auto device =
        std::find_if(devices_.begin(), devices_.end(), [label](const Device& entry) { return entry.label == label; });
    return device == devices_.end() ? nullptr : &*device;
  }

  std::string labels() const {
    std::string labels;
    for (const Device& device : devices_) labels.append(labels.empty() ? "" : ", ").append(device.label);
    return labels;
  }

  const std::vector<Device>& devices() const { return devices_; }

 private:
  std::vector<Device> devices_;
};

}  // namespace tembra::sim

#endif
