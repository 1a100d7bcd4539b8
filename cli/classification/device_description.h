// A device as a JSON text describes it, as the record that the radio's server would send. docs/classify.md has the
// members.
#ifndef TEMBRA_CLI_DEVICE_DESCRIPTION_H
#define TEMBRA_CLI_DEVICE_DESCRIPTION_H

#include <tembra/records.h>

#include <string>
#include <variant>
#include <vector>

namespace tembra::cli {

struct DeviceDescription {
  std::variant<ZwNodeInfo, ZbDeviceInfo> record;
  std::vector<std::string> remarks;  ///< what of the description does not fit into the record
};

/// Throws Failure (kFailed) with one sentence when the text is no such description.
[[nodiscard]] DeviceDescription readDescription(const std::string& text);

}  // namespace tembra::cli

#endif
