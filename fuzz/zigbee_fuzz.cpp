// A ZigBee device description from its classification to the notice that hands the device over.
#include <tembra/association.h>
#include <tembra/globals.h>
#include <tembra/rules.h>

#include <algorithm>
#include <cstring>
#include <iterator>

#include "support/plain_router.h"
#include "support/script.h"

namespace {

using fuzz::require;

constexpr std::size_t kMostIndexes = sizeof(ZbDeviceInfo::indexes) / sizeof(ZbIndexEntry);

bool sameUpTo(const ZbDeviceInfo& one, const ZbDeviceInfo& other, std::size_t begin, std::size_t end) {
  const auto* oneByte = reinterpret_cast<const char*>(&one);
  const auto* otherByte = reinterpret_cast<const char*>(&other);
  return std::memcmp(oneByte + begin, otherByte + begin, end - begin) == 0;
}

bool isMeasuredOn(const ZbDeviceInfo& received, unsigned char endpoint) {
  return std::any_of(std::begin(received.clusters), std::end(received.clusters), [&](const ZbClusterEntry& entry) {
    return entry.cluster == ZB_ELECTRICAL_MEASUREMENT && (entry.endpoint & 0xFF) == endpoint;
  });
}

// The table's end mark may stand on the name behind it, and the endpoint of a measurement in each second byte.
bool isUntouchedBehindTable(const ZbDeviceInfo& device, const ZbDeviceInfo& received) {
  const auto* now = reinterpret_cast<const unsigned char*>(&device);
  const auto* before = reinterpret_cast<const unsigned char*>(&received);
  for (std::size_t at = offsetof(ZbDeviceInfo, name) + 1; at < sizeof device; ++at) {
    const bool mayHoldEndpoint = at % 2 != 0 && isMeasuredOn(received, now[at]);
    if (now[at] != before[at] && !mayHoldEndpoint) return false;
  }
  return true;
}

void checkUntouched(const ZbDeviceInfo& device, const ZbDeviceInfo& received) {
  require(sameUpTo(device, received, 0, offsetof(ZbDeviceInfo, devType)), "what stands before the type stays");
  require(sameUpTo(device, received, offsetof(ZbDeviceInfo, at213), offsetof(ZbDeviceInfo, indexCount)),
          "what stands between the type and the table stays");
  require(isUntouchedBehindTable(device, received), "what stands behind the table stays");
}

void finish(TembraAssociation& assoc, fuzz::Script& script) {
  DevType types[6] = {};
  assoc.listSubDevType(static_cast<DevType>(assoc.classifiedType), types);
  assoc.setDevType(static_cast<DevType>(script.smallNumber()));
  const fuzz::CallersText name = script.text();
  const fuzz::CallersText location = script.text();
  if (name.get() != nullptr) assoc.setDevName(name.get());
  if (location.get() != nullptr) assoc.setDevLocation(location.get());
  assoc.addingDone();
  require(fuzz::isTerminated(assoc.zbDevice.location), "the location in the record ends");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Script script(data, size);
  fuzz::PlainRouter router;
  const fuzz::IdStage stage(router);
  TembraAssociation& assoc = stage.assoc();
  const auto received = script.read<ZbDeviceInfo>();
  assoc.zbDevice = received;
  require(assoc.GetDeviceTypeInStringFormat(script.word()) != nullptr, "every zone has a name");
  const int result = assoc.zb_createAnyDevice();
  require(result == 0 || result == -1, "a device is created or not");
  require(DevId == fuzz::IdStage::kNextId && fuzz::isTerminated(assoc.devName), "id and name are noted");
  checkUntouched(assoc.zbDevice, received);
  if (result != 0) return 0;
  require(assoc.zbDevice.indexCount <= kMostIndexes, "the table has at most 29 entries");
  require(assoc.zbDevice.devType != DEVTYPE_UNKNOWN, "a created device has a type");
  finish(assoc, script);
  return 0;
}
