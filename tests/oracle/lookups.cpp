#include "formatted.h"
#include "model.h"
#include "offsets.h"

namespace oracle {
namespace {

constexpr int kZwaveRecord = 2;
constexpr std::size_t kMostOfAnId = 10;

}  // namespace

// A database that cannot be opened is deleted, and is then an empty one.
bool Model::openDatabase() {
  const Health before = database.health;
  database.health = Health::kGood;
  if (before == Health::kNeedsRepair || before == Health::kCannotBeOpened) {
    line("stderr dpopen: broken database file");
  }
  if (before != Health::kCannotBeOpened) return true;
  database.rows.clear();
  return false;
}

void Model::nextDeviceId() {
  if (!openDatabase()) {
    deviceId = -1;
    return;
  }
  const Row* next = database.find("NextDevid");
  if (next == nullptr) return;
  const std::string text(next->value.begin(), next->value.end());
  deviceId = std::atoi(text.substr(0, kMostOfAnId).c_str());
}

void Model::remember(const Row& row) {
  removedName.setText(textAt(row, kDeviceName));
  removedId = *wordAt(row, kDeviceId);
}

bool Model::findZwaveNode() {
  if (!openDatabase()) return false;
  bool found = false;
  for (const Row* row : database.devices()) {
    if (!isZwaveNode(*row, zwReceived.byte(0))) continue;
    found = true;
    remember(*row);
    logFormatted(0, "libTembraAssoc:Removing Zwave device " + std::to_string(*wordAt(*row, kDeviceNode)));
  }
  return found;
}

void Model::removeZwaveNode() {
  if (!openDatabase()) return;
  for (const Row* row : database.devices()) {
    if (!isZwaveNode(*row, zwReceived.byte(0))) continue;
    remember(*row);
    logFormatted(0, "libTembraAssoc:Removing Zwave device " + std::to_string(*wordAt(*row, kDeviceNode)));
    zwWork.setByte(0, zwReceived.byte(0));
    zwWork.setNumber(kNodeKind, kZwaveRecord);
    zwWork.setByte(kNodeMark, 254);
    if (sendToHa(kZwaveRecord, {zwWork.bytes.begin(), zwWork.bytes.end()})) {
      log(0, "libTembraAssoc:device removed sending success to haserver");
    } else {
      log(2, "libTembraAssoc:sending failed to haserver");
    }
  }
}

void Model::findZigbeeDevice() {
  if (!openDatabase()) return;
  const int address = zbDevice.byte(0) | zbDevice.byte(1) << 8;
  bool found = false;
  for (const Row* row : database.devices()) {
    if (!isZigbeeAddress(*row, address)) continue;
    found = true;
    remember(*row);
    logFormatted(0, formatted("libTembraAssoc:Removing zigbee device 0x%.2x", static_cast<unsigned>(address)));
  }
  if (!found) zbDevice.setByte(kZigbeeMessage, 12);
}

}  // namespace oracle
