// The list of known Hue bridges and their users, read from the device database.
#include <tembra/association.h>
#include <tembra/globals.h>
#include <tembra/hue.h>

#include <cstdlib>
#include <cstring>

#include "database/device_database.h"
#include "support/text.h"
#include "support/text_writer.h"

namespace tembra {
namespace {

constexpr std::size_t kMostBridges = 20;
constexpr std::size_t kListedTextSize = 50;
constexpr std::size_t kKeySize = 16;
constexpr std::size_t kJsonFrameSize = 200;
constexpr std::size_t kJsonElementSize = 100;

// Which index of a device holds its bridge, and which its user, by the name of its type.
struct HueIndexes {
  const char* typeName;
  int bridge;
  int user;
};

constexpr HueIndexes kHueIndexes[] = {
    {"HueLamp", 1, 9},
    {"MultilevelSwitchOnOff", 3, 5},
};

class BridgeCollector {
 public:
  explicit BridgeCollector(DatabaseSession& database) : database_(database) {}

  void visit(const DeviceRecord& device) {
    chooseKeys(device);
    addBridge();
    addUser();
  }

  // JSON text from malloc, null without memory.
  [[nodiscard]] char* json() const;

 private:
  void chooseKeys(const DeviceRecord& device);
  void addBridge();
  void addUser();

  DatabaseSession& database_;
  char bridgeKey_[kKeySize] = {};
  char userKey_[kKeySize] = {};
  char macs_[kMostBridges][kListedTextSize] = {};
  std::size_t count_ = 0;
};

// A device of another type leaves the keys of the device before it [sic].
void BridgeCollector::chooseKeys(const DeviceRecord& device) {
  for (const HueIndexes& indexes : kHueIndexes) {
    if (std::strncmp(device.typeName, indexes.typeName, sizeof device.typeName) != 0) continue;
    TextWriter(bridgeKey_, sizeof bridgeKey_) << device.id << "." << indexes.bridge;
    TextWriter(userKey_, sizeof userKey_) << device.id << "." << indexes.user;
  }
}

// Only the entry before is compared, and only a new user moves on to the next entry [sic]. A new bridge of the same
// user overwrites the entry before. A new user of the same bridge leaves a hole that ends the list.
void BridgeCollector::addBridge() {
  char value[sizeof(IndexRecord::value) + 1];
  if (count_ == kMostBridges || bridgeKey_[0] == '\0' || !database_.readIndexValue(bridgeKey_, value)) return;
  char mac[kListedTextSize] = {};
  HueMac(value, mac);
  if (count_ == 0 || std::strstr(macs_[count_ - 1], mac) == nullptr) copyText(macs_[count_], mac);
}

void BridgeCollector::addUser() {
  char value[sizeof(IndexRecord::value) + 1];
  if (count_ == kMostBridges || userKey_[0] == '\0' || !database_.readIndexValue(userKey_, value)) return;
  char user[kListedTextSize] = {};
  copyText(user, value);  // cut before it is compared: that is how it was stored
  if (count_ > 0 && std::strstr(username1[count_ - 1], user) != nullptr) return;
  copyText(username1[count_++], user);
}

char* BridgeCollector::json() const {
  const std::size_t size = count_ * kJsonElementSize + kJsonFrameSize;
  auto* text = static_cast<char*>(std::malloc(size));
  if (text == nullptr) return nullptr;
  TextWriter list(text, size);
  list << R"({"MAClist":[)";
  for (std::size_t i = 0; i < kMostBridges && macs_[i][0] != '\0'; ++i) {
    list << (i == 0 ? "" : ",") << R"({"mac":")" << macs_[i] << R"(","username":")"
         << fieldText(username1[i], kListedTextSize - 1) << R"("})";
  }
  list << "]}";
  return text;
}

}  // namespace
}  // namespace tembra

using namespace tembra;

char* TembraAssociation::Hue_getBridgeList() {
  DatabaseSession database;
  if (!database.isOpen()) return nullptr;
  BridgeCollector bridges(database);
  database.forEachDevice([&](const StoredDevice& device) {
    if (device.isIpDevice()) bridges.visit(device.record());
  });
  return bridges.json();
}
