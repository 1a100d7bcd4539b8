// What the contract forbids in the records that daemons send.
#ifndef TEMBRA_TOOLS_DAEMON_CHECK_RECORD_FAULTS_H
#define TEMBRA_TOOLS_DAEMON_CHECK_RECORD_FAULTS_H

#include <string>
#include <vector>

#include "tembra/records.h"

namespace tembra::daemon_check {

using Faults = std::vector<std::string>;

/// Of a node that is described in full.
[[nodiscard]] Faults faultsIn(const ZwNodeInfo& node);
/// Of a device that is described in full.
[[nodiscard]] Faults faultsIn(const ZbDeviceInfo& device);
/// Of a list of bridges.
[[nodiscard]] Faults faultsIn(const HueAnswer& answer);
/// The id of the first bridge of a list without faults and with a bridge.
[[nodiscard]] std::string firstBridgeId(const HueAnswer& answer);

}  // namespace tembra::daemon_check

#endif
