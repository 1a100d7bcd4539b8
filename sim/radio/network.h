// A radio's memory: which address is which device.
#ifndef TEMBRA_SIM_RADIO_NETWORK_H
#define TEMBRA_SIM_RADIO_NETWORK_H

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace tembra::sim {

class RadioNetwork {
 public:
  using Address = unsigned short;

  /// Devices get the addresses from `first` to `last`.
  RadioNetwork(Address first, Address last) : first_(first), last_(last), latest_(last) {}

  /// The address of a device: the one it has, else a new one. Empty when every address is taken.
  std::optional<Address> join(std::string_view device);
  /// Takes over a device of an earlier run.
  void restore(Address address, std::string_view device);
  std::optional<Address> find(std::string_view device) const;
  /// Empty when nobody has the address.
  std::string deviceAt(Address address) const;
  void forget(Address address) { devices_.erase(address); }
  void clear() { devices_.clear(); }
  const std::map<Address, std::string>& devices() const { return devices_; }

 private:
  std::optional<Address> freeAddress() const;

  Address first_;
  Address last_;
  Address latest_;
  std::map<Address, std::string> devices_;
};

}  // namespace tembra::sim

#endif
