#include <algorithm>

#include "generator.h"
#include "operations.h"
#include "oracle/offsets.h"

namespace oracle {
namespace {

constexpr std::size_t kMostRecords = 9;
constexpr int kFirstId = 10;
constexpr int kIds = 6;

Row rowOf(const std::string& key, const Record<512>& record, std::size_t length = 512) {
  return {key, {record.bytes.begin(), record.bytes.begin() + static_cast<std::ptrdiff_t>(length)}};
}

Row textRow(const std::string& key, const std::string& text) { return {key, {text.begin(), text.end()}}; }

Row indexRow(const std::string& key, const std::string& value) {
  Record<92> record;
  record.setText(value, kIndexValue);
  return {key, {record.bytes.begin(), record.bytes.end()}};
}

std::string wordsOf(const std::vector<Row>& rows) {
  std::string words;
  for (const Row& row : rows) words += (words.empty() ? "" : ", ") + row.key;
  return words.empty() ? "no records" : "records " + words;
}

}  // namespace

// A device of either radio, or of none; its record may be short.
Row Generator::anyDevice() {
  constexpr int kNodes[] = {5, 5, 5, 6, 6, 7, 0, 255, 256 + 5, 77};
  constexpr int kKinds[] = {1, 2, 2, 3};
  constexpr int kAddresses[] = {0x1234, 0x0042, 0x10000 + 0x42, 0};
  constexpr std::size_t kLengths[] = {512, 512, 512, 512, 512, 404, 403, 372, 371, 100, 4};
  const std::string names[] = {"Lamp", "Chandelier over the table", "x", std::string(200, 'y'), "50%d"};
  const std::string types[] = {"HueLamp", "MultilevelSwitchOnOff", "BinarySwitch"};
  const int id = kFirstId + below(kIds);
  Record<512> record;
  record.setNumber(kDeviceId, id);
  record.setText(oneOf(names), kDeviceName, 360);
  record.setText(oneOf(types), kDeviceTypeName);
  const int kind = oneOf(kKinds);
  record.setNumber(kDeviceKind, kind);
  if (kind == 1) record.setNumber(kDeviceAddress, oneOf(kAddresses));
  if (kind == 2) record.setNumber(kDeviceNode, oneOf(kNodes));
  return rowOf(std::to_string(id), record, oneOf(kLengths));
}

Row Generator::anyRow() {
  const std::string nextIds[] = {"17", "0", "12345678901", "-4", "x", ""};
  const std::string bridges[] = {"a1b2c3fffe0a1b01", "02a1b2fffe7a0c2f", ""};
  const std::string users[] = {"ann", "bob", "anne"};
  const std::string id = std::to_string(kFirstId + below(kIds));
  const int dice = below(100);
  if (dice < 65) return anyDevice();
  if (dice < 80) return textRow("NextDevid", oneOf(nextIds));
  if (dice < 85) return textRow("Version", "3");
  if (dice < 93) return indexRow(id + (chance(50) ? ".1" : ".3"), oneOf(bridges));
  return indexRow(id + (chance(50) ? ".9" : ".5"), oneOf(users));
}

// The database that is there, with some records more or one less, or broken.
Step Generator::anyDatabase() {
  constexpr const char* kHealths[] = {"", ", to be repaired", ", that cannot be opened", ", no file"};
  Step step = call("database");
  step.rows = model_.database.rows;
  if (chance(10)) step.health = static_cast<Health>(1 + below(3));
  if (step.health == Health::kMissing) step.rows.clear();
  if (step.health == Health::kGood && !step.rows.empty() && chance(20)) step.rows.erase(step.rows.begin());
  for (int more = below(5); step.health == Health::kGood && more > 0; --more) {
    const Row row = anyRow();
    std::erase_if(step.rows, [&](const Row& each) { return each.key == row.key; });
    if (step.rows.size() < kMostRecords) step.rows.push_back(row);
  }
  step.other = wordsOf(step.rows) + kHealths[static_cast<int>(step.health)];
  return step;
}

}  // namespace oracle
