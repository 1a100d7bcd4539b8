#include "classified.h"

namespace {

constexpr char kSummary[] = "libTembraAssoc:No. of clusters found:";

}  // namespace

Classified classify(kit::Router& router, const kit::ZigbeeDevice& device) {
  TembraAssociation& assoc = router.assoc();
  assoc.zbDevice = device.info();
  DevId = 17;
  Classified found;
  router.onLog([&](const std::string& line) {
    if (line.rfind(kSummary, 0) != 0) return;
    found.nameInWalk = assoc.devName;
    found.typeInWalk = assoc.zbDevice.devType;
  });
  router.forget();
  found.result = assoc.validate_DeviceType();
  router.onLog(nullptr);
  found.name = assoc.devName;
  found.type = assoc.zbDevice.devType;
  found.classifiedType = assoc.classifiedType;
  found.entries = entriesOf(assoc.zbDevice);
  found.log = router.takeTrace();
  return found;
}

std::string entriesOf(const ZbDeviceInfo& device) {
  std::string text;
  for (int i = 0; i < device.indexCount && i < 29; ++i) {
    text += std::to_string(device.indexes[i].type) + "@" + std::to_string(device.indexes[i].endpoint) + " ";
  }
  const auto* bytes = reinterpret_cast<const unsigned char*>(&device);
  return text + (device.indexCount < 30 && bytes[320 + 2 * device.indexCount] == 255 ? "end" : "no end");
}

std::string summary(int clusters, int indexes, const char* zone) {
  return "log 0 libTembraAssoc:No. of clusters found:" + std::to_string(clusters) +
         " and indexes:" + std::to_string(indexes) + " zonetype:" + zone + "\n";
}
