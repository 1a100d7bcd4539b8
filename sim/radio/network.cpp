#include "sim/radio/network.h"

#include <algorithm>

namespace tembra::sim {

// A radio goes on counting and comes back to freed addresses only at the end of its range.
std::optional<RadioNetwork::Address> RadioNetwork::freeAddress() const {
  const int range = last_ - first_ + 1;
  for (int step = 1; step <= range; ++step) {
    const auto address = static_cast<Address>(first_ + (latest_ - first_ + step + range) % range);
    if (!devices_.contains(address)) return address;
  }
  return std::nullopt;
}

std::optional<RadioNetwork::Address> RadioNetwork::join(std::string_view device) {
  if (const auto known = find(device)) return known;
  const auto address = freeAddress();
  if (address) restore(*address, device);
  return address;
}

void RadioNetwork::restore(Address address, std::string_view device) {
  devices_[address] = device;
  latest_ = address;
}

std::optional<RadioNetwork::Address> RadioNetwork::find(std::string_view device) const {
  const auto entry = std::find_if(devices_.begin(), devices_.end(),
                                  [device](const auto& candidate) { return candidate.second == device; });
  if (entry == devices_.end()) return std::nullopt;
  return entry->first;
}

std::string RadioNetwork::deviceAt(Address address) const {
  const auto entry = devices_.find(address);
  return entry == devices_.end() ? std::string() : entry->second;
}

}  // namespace tembra::sim
