// Classification of a ZigBee device by its clusters. What each cluster means stands in <tembra/rules.h>; here is the
// walk over the device's clusters and what an IAS zone does beyond a table row.
#include <tembra/association.h>
#include <tembra/globals.h>
#include <tembra/rules.h>

#include <algorithm>

#include "classify/zigbee/index_table.h"
#include "support/device_type_name.h"
#include "support/log.h"
#include "support/state_lock.h"

using tembra::Level;

namespace {

constexpr std::size_t kMostClusters = sizeof(ZbDeviceInfo::clusters) / sizeof(ZbClusterEntry);
constexpr std::size_t kCameraEntriesWithEndpoint = 3;
constexpr std::size_t kMeasurementEndpoints = 13;
constexpr unsigned short kSmokeEndpoint = 2;

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
  void applyZoneExceptions();
  void finish();

  // A list without an end mark ends after its last entry.
  [[nodiscard]] int clusterAt(std::size_t position) const {
    return position < kMostClusters ? device_.clusters[position].cluster : static_cast<int>(ZB_END);
  }
  [[nodiscard]] bool modelHas(const char* text) const { return zbTextHas(device_.model, text); }
  void name(const char* word) { tembra::setNumberedName(assoc_.devName, word, DevId); }
  void setType(int type) { device_.devType = static_cast<unsigned char>(type); }
  void say(const char* text) const { tembra::log(assoc_, Level::Progress, text); }

  TembraAssociation& assoc_;
  ZbDeviceInfo& device_;
  tembra::ZbIndexTable table_;
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
    for (std::size_t i = 0; i < kMeasurementEndpoints; ++i) table_.setEndpoint(table_.slot() + i, endpoint);
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
      tembra::logLine(assoc_, Level::Progress, TEMBRA_LOG_PREFIX "Manu name %.*s \n",
                      static_cast<int>(sizeof device_.manufacturer), device_.manufacturer);
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
  tembra::logLine(assoc_, Level::Progress, TEMBRA_LOG_PREFIX "Manufacturer name received:%.*s",
                  static_cast<int>(sizeof device_.manufacturer), device_.manufacturer);
  if (next == ZB_IAS_CAMERA) return visitCamera(endpoint);
  if (next == ZB_IAS_ATTACHED) return;
  ++found_;
  if (device_.devType != DEVTYPE_OCCUPANCY_SENSOR) classifyZone(endpoint);
}

void Classifier::visitCamera(unsigned short endpoint) {
  tembra::logLine(assoc_, Level::Progress, TEMBRA_LOG_PREFIX "Found 503 cluster %d", static_cast<int>(table_.slot()));
  std::size_t added = 0;
  for (const unsigned char entry : zbCameraEntries) {
    added++ < kCameraEntriesWithEndpoint ? table_.add(entry, endpoint) : table_.addType(entry);
  }
  tembra::logLine(assoc_, Level::Progress, TEMBRA_LOG_PREFIX "Found 503 device %d", static_cast<int>(table_.slot()));
  name("ZigbeeCamImage");
  setType(DEVTYPE_ZIGBEE_CAM_IMAGE);
}

void Classifier::classifyZone(unsigned short endpoint) {
  const char* zone = assoc_.GetDeviceTypeInStringFormat(device_.zoneType);
  assoc_.classifiedType = StrToDevType(zone);
  if (modelHas("MiniSD")) {
    say(TEMBRA_LOG_PREFIX "Mini smoke detector found");
    if (endpoint == kSmokeEndpoint) assoc_.classifiedType = DEVTYPE_MOTION_SENSOR;
  }
  tembra::logLine(assoc_, Level::Progress, TEMBRA_LOG_PREFIX "Device associated:%s ", zone);
  addZoneEntries(endpoint);
  name(zbFindDisplayName(zone, device_));
  setType(assoc_.classifiedType);
  applyZoneExceptions();
}

void Classifier::addZoneEntries(unsigned short endpoint) {
  if (assoc_.classifiedType == DEVTYPE_MOTION_SENSOR) say(TEMBRA_LOG_PREFIX "Detected as a motion sensor");
  for (const unsigned char entry : zbFindZoneEntries(assoc_.classifiedType, device_).entries) {
    if (entry != 0) table_.add(entry, endpoint);
  }
}

// Both make the device undecided again. The second looks at the entry not yet written and at entry 0, too [sic]:
// there stand received bytes.
void Classifier::applyZoneExceptions() {
  if (modelHas("MiniSD")) return setType(DEVTYPE_UNKNOWN);
  if (!modelHas("SZ-PIR04N")) return;
  std::size_t entry = std::min(table_.slot(), tembra::ZbIndexTable::kLast) + 1;
  while (entry-- > 0) {
    if (table_.typeAt(entry) != INDEX_ILLUMINANCE) continue;
    setType(DEVTYPE_UNKNOWN);
    say(TEMBRA_LOG_PREFIX "Sercomm motion and illuminance found");
  }
}

void Classifier::finish() {
  table_.end();
  device_.indexCount = static_cast<unsigned char>(table_.slot() - 1);
  tembra::logLine(assoc_, Level::Progress, TEMBRA_LOG_PREFIX "No. of clusters found:%d and indexes:%d zonetype:%x",
                  found_, device_.indexCount, device_.zoneType);
  if (device_.devType != DEVTYPE_UNKNOWN) return;
  name("GenericDevice");
  setType(DEVTYPE_GENERIC_DEVICE);
}

}  // namespace

const char* TembraAssociation::GetDeviceTypeInStringFormat(unsigned short zoneType) {
  const tembra::StateLock lock;
  return zbFindZoneName(zoneType, zbDevice);
}

int TembraAssociation::validate_DeviceType() {
  const tembra::StateLock lock;
  return Classifier(*this).run() ? 0 : -1;
}
