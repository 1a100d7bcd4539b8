// Classification of a ZigBee device by its clusters. What each cluster and each IAS zone means, exceptions included,
// stands in <tembra/rules.h>; here is the walk over the device's clusters.
#include <tembra/association.h>
#include <tembra/globals.h>
#include <tembra/rules.h>

#include <cstddef>

#include "classify/zigbee/index_table.h"
#include "support/device_type_name.h"
#include "support/log.h"
#include "support/state_lock.h"

namespace tembra {
namespace {

constexpr std::size_t kMostClusters = sizeof(ZbDeviceInfo::clusters) / sizeof(ZbClusterEntry);
constexpr std::size_t kMeasurementEndpoints = 13;

class Classifier {
 public:
  explicit Classifier(TembraAssociation& assoc) : assoc_(assoc), device_(assoc.zbDevice), table_(assoc.zbDevice) {}

  // False when a decision stopped the classification: the record then stays half-written.
  bool run() {
    assoc_.classifiedType = DEVTYPE_UNKNOWN;
    for (std::size_t i = 0; clusterAt(i) != ZB_END; ++i) {
      if (!visit(i)) return false;
    }
    finish();
    return true;
  }

 private:
  bool visit(std::size_t position);
  bool decide(int cluster);
  void visitZone(unsigned short endpoint, int next);
  void visitCamera(unsigned short endpoint);
  void classifyZone(unsigned short endpoint);
  void addZoneEntries(unsigned short endpoint);
  void settleZone();
  void settleAs(const ZbZoneAfterwards& afterwards);
  void finish();

  // A list without an end mark ends after its last entry.
  [[nodiscard]] int clusterAt(std::size_t position) const {
    return position < kMostClusters ? device_.clusters[position].cluster : static_cast<int>(ZB_END);
  }
  void name(const char* word) { setNumberedName(assoc_.devName, word, DevId); }
  void setType(int type) { device_.devType = static_cast<unsigned char>(type); }
  void say(const char* text) const { log(assoc_, Level::kProgress, text); }

  TembraAssociation& assoc_;
  ZbDeviceInfo& device_;
  ZbIndexTable table_;
  int found_ = 0;
};

bool Classifier::visit(std::size_t position) {
  const ZbClusterRule* rule = zbFindClusterRule(clusterAt(position));
  if (rule == nullptr) return true;
  const unsigned short endpoint = device_.clusters[position].endpoint;
  if (rule->cluster == ZB_IAS_ZONE) {
    visitZone(endpoint, clusterAt(position + 1));
    return true;
  }
  if (rule->cluster == ZB_ELECTRICAL_MEASUREMENT) {
    // The endpoint goes into thirteen entries of which four are used [sic]; later entries overwrite their own.
    table_.setEndpoints(kMeasurementEndpoints, endpoint);
  }
  for (const unsigned char entry : rule->entries) {
    if (entry != 0) table_.add(entry, endpoint);
  }
  if (rule->counted) ++found_;
  return decide(rule->cluster);
}

bool Classifier::decide(int cluster) {
  const ZbDecision* decision = zbFindDecision(cluster, device_);
  if (decision == nullptr) return true;
  if (decision->name != nullptr) name(decision->name);
  if (decision->type != ZB_KEEP_TYPE) setType(decision->type);
  switch (decision->effect) {
    case ZB_NO_EFFECT:
      return true;
    case ZB_LOG_MANUFACTURER:
      LogLine(assoc_, Level::kProgress, TEMBRA_LOG_PREFIX "Manu name ") << fieldText(device_.manufacturer) << " \n";
      return true;
    case ZB_LOG_OSRAM:
      say(TEMBRA_LOG_PREFIX "Manufacturer Name: Osram");
      return true;
    case ZB_STOP:
      break;
  }
  return false;
}

void Classifier::visitZone(unsigned short endpoint, int next) {
  say(TEMBRA_LOG_PREFIX "ias zone cluster");
  LogLine(assoc_, Level::kProgress, TEMBRA_LOG_PREFIX "Manufacturer name received:") << fieldText(device_.manufacturer);
  const ZbZoneCase& zone = zbFindZoneCase(next, device_);
  if (zone.counted) ++found_;
  switch (zone.outcome) {
    case ZB_ZONE_CAMERA:
      return visitCamera(endpoint);
    case ZB_ZONE_CLASSIFIED:
      return classifyZone(endpoint);
    case ZB_ZONE_IGNORED:
      break;
  }
}

void Classifier::visitCamera(unsigned short endpoint) {
  LogLine(assoc_, Level::kProgress, TEMBRA_LOG_PREFIX "Found 503 cluster ") << static_cast<int>(table_.slot());
  std::size_t added = 0;
  for (const unsigned char entry : zbCameraEntries) {
    added++ < ZB_CAMERA_ENDPOINTS ? table_.add(entry, endpoint) : table_.addType(entry);
  }
  LogLine(assoc_, Level::kProgress, TEMBRA_LOG_PREFIX "Found 503 device ") << static_cast<int>(table_.slot());
  name("ZigbeeCamImage");
  setType(DEVTYPE_ZIGBEE_CAM_IMAGE);
}

void Classifier::classifyZone(unsigned short endpoint) {
  const char* zone = assoc_.GetDeviceTypeInStringFormat(device_.zoneType);
  assoc_.classifiedType = StrToDevType(zone);
  if (const ZbZoneTypeException* exception = zbFindZoneTypeException(device_)) {
    say(exception->log);
    if (zbChangesZoneOn(*exception, endpoint)) assoc_.classifiedType = exception->type;
  }
  LogLine(assoc_, Level::kProgress, TEMBRA_LOG_PREFIX "Device associated:") << zone << " ";
  addZoneEntries(endpoint);
  name(zbFindDisplayName(zone, device_));
  setType(assoc_.classifiedType);
  settleZone();
}

void Classifier::addZoneEntries(unsigned short endpoint) {
  if (assoc_.classifiedType == DEVTYPE_MOTION_SENSOR) say(TEMBRA_LOG_PREFIX "Detected as a motion sensor");
  for (const unsigned char entry : zbFindZoneEntries(assoc_.classifiedType, device_).entries) {
    if (entry != 0) table_.add(entry, endpoint);
  }
}

// The entries are looked at from the next one downwards. Behind a full table that is the first byte of the name.
void Classifier::settleZone() {
  const ZbZoneAfterwards* afterwards = zbFindZoneAfterwards(device_);
  if (afterwards == nullptr) return;
  if (afterwards->entry == 0) return settleAs(*afterwards);
  for (std::size_t entry = ZbIndexTable::kLast + 2; entry-- > 0;) {
    const bool scanned = zbIsScanned(static_cast<int>(entry), static_cast<int>(table_.slot()));
    if (scanned && table_.typeAt(entry) == afterwards->entry) settleAs(*afterwards);
  }
}

void Classifier::settleAs(const ZbZoneAfterwards& afterwards) {
  setType(afterwards.type);
  if (afterwards.log != nullptr) say(afterwards.log);
}

void Classifier::finish() {
  table_.end();
  device_.indexCount = static_cast<unsigned char>(table_.slot() - 1);
  LogLine(assoc_, Level::kProgress, TEMBRA_LOG_PREFIX "No. of clusters found:")
      << found_ << " and indexes:" << device_.indexCount << " zonetype:" << Hex{device_.zoneType, 1};
  if (device_.devType != DEVTYPE_UNKNOWN) return;
  name("GenericDevice");
  setType(DEVTYPE_GENERIC_DEVICE);
}

}  // namespace
}  // namespace tembra

using namespace tembra;

const char* TembraAssociation::GetDeviceTypeInStringFormat(unsigned short zoneType) {
  const StateLock lock;
  return zbFindZoneName(zoneType, zbDevice);
}

int TembraAssociation::validate_DeviceType() {
  const StateLock lock;
  return Classifier(*this).run() ? 0 : -1;
}
