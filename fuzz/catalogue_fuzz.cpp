// A catalogue of the simulator's devices. The first byte chooses the radio.
#include <cstdint>
#include <stdexcept>

#include "sim/zigbee/catalogue.h"
#include "sim/zwave/catalogue.h"
#include "support/invariant.h"
#include "support/text_file.h"

namespace {

template <typename Catalogue>
void load(const char* name, const std::uint8_t* data, std::size_t size) {
  const fuzz::TextFile file(name, data, size);
  try {
    const Catalogue catalogue = Catalogue::load(".");
    for (const auto& device : catalogue.devices()) {
      fuzz::require(catalogue.find(device.label) != nullptr, "a device is found by its label");
    }
  } catch (const std::runtime_error& refusal) {
    fuzz::require(*refusal.what() != '\0', "a refusal says why");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  if (data[0] % 2 == 0) {
    load<tembra::sim::ZwaveCatalogue>("zwave.json", data + 1, size - 1);
  } else {
    load<tembra::sim::ZigbeeCatalogue>("zigbee.json", data + 1, size - 1);
  }
  return 0;
}
