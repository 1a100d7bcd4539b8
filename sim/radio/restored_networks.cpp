#include "sim/radio/restored_networks.h"

#include <string>

#include "tembra/vocabulary.h"

namespace tembra::sim {

void restoreNetworks(const DeviceList& list, RadioNetwork& zwave, RadioNetwork& zigbee) {
  for (const DeviceRecord& record : list.devices()) {
    const std::string note = DeviceList::noteOf(record);
    const std::string device = note.empty() ? "?" : note;
    if (record.radioKind == RADIO_ZWAVE) zwave.restore(static_cast<RadioNetwork::Address>(record.zwaveNode), device);
    if (record.radioKind == kRadioZigbee) {
      zigbee.restore(static_cast<RadioNetwork::Address>(record.zigbeeAddress), device);
    }
  }
}

void recordDatabase(const DeviceList& list, Journal& journal) {
  for (const DatabaseRecord& record : list.contents()) {
    if (const std::string line = recording::lineOf(record); !line.empty()) journal.recordFact(line);
  }
}

}  // namespace tembra::sim
