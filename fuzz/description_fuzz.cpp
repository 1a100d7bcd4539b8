// The description of a device that `tembra-assoc classify` reads.
#include <cstdint>

#include "cli/classification/device_description.h"
#include "cli/failure.h"
#include "support/invariant.h"

namespace {

bool textsEnd(const ZwNodeInfo& node) { return fuzz::isTerminated(node.name) && fuzz::isTerminated(node.location); }
bool textsEnd(const ZbDeviceInfo& device) {
  return fuzz::isTerminated(device.manufacturer) && fuzz::isTerminated(device.model);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  try {
    const auto description = tembra::cli::readDescription({reinterpret_cast<const char*>(data), size});
    const bool end = std::visit([](const auto& record) { return textsEnd(record); }, description.record);
    fuzz::require(end, "texts of a described record end");
  } catch (const tembra::cli::Failure& refusal) {
    fuzz::require(*refusal.what() != '\0', "a refusal says why");
  }
  return 0;
}
