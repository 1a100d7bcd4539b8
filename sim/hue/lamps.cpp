#include "sim/hue/lamps.h"

#include <algorithm>
#include <vector>

#include "tembra/platform.h"
#include "tembra/vocabulary.h"

namespace tembra::sim {
namespace {

// Where front ends look for the bridge and the user of a bulb.
constexpr int kBridgeIndex = 1;
constexpr int kUserIndex = 9;

bool belongsTo(const DeviceRecord& record, const std::string& bridgeId) {
  return record.radioKind == RADIO_IP && DeviceList::noteOf(record) == bridgeId;
}

// The user that the bridge made up for this router when its link button was pressed.
std::string userOf(const std::string& bridgeId) { return "user-" + bridgeId; }

}  // namespace

bool HueLamps::holds(const std::string& bridgeId) const {
  const std::vector<DeviceRecord> records = list_.devices();
  return std::any_of(records.begin(), records.end(),
                     [&bridgeId](const DeviceRecord& record) { return belongsTo(record, bridgeId); });
}

void HueLamps::add(const std::string& bridgeId, const std::string& name) {
  const std::vector<NewIndex> indexes{{kBridgeIndex, INDEX_NONE, 0, bridgeId},
                                      {kUserIndex, INDEX_NONE, 0, userOf(bridgeId)}};
  haServer_.store({name, 0, 0, RADIO_IP, StrToDevType("HueLamp"), indexes}, bridgeId);
}

void HueLamps::addFirst(const std::string& bridgeId) {
  if (!holds(bridgeId)) add(bridgeId, "Hue lamp");
}

void HueLamps::drop(const std::string& bridgeId) {
  haServer_.drop(
      "bridge " + bridgeId, [&bridgeId](const DeviceRecord& record) { return belongsTo(record, bridgeId); },
      Happening::kRemoved);
}

}  // namespace tembra::sim
