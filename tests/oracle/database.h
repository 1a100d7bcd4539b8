// The device database as a plain list of records in the order of the file.
#ifndef TEMBRA_TESTS_ORACLE_DATABASE_H
#define TEMBRA_TESTS_ORACLE_DATABASE_H

#include <optional>
#include <string>
#include <vector>

#include "effect.h"

namespace oracle {

/// A record of the device database.
struct Row {
  std::string key;
  Bytes value;
};

enum class Health { kGood, kNeedsRepair, kCannotBeOpened, kMissing };

struct Database {
  std::vector<Row> rows;
  Health health = Health::kMissing;

  [[nodiscard]] const Row* find(const std::string& key) const;

  /// The device records, in order: no "NextDevid", no "Version", no index records.
  [[nodiscard]] std::vector<const Row*> devices() const;
};

/// What readers take from a device record; nothing that the record is too short to hold.
std::optional<int> wordAt(const Row& row, std::size_t offset);
std::string textAt(const Row& row, std::size_t offset);

bool isZwaveNode(const Row& row, int node);
bool isZigbeeAddress(const Row& row, int address);

}  // namespace oracle

#endif
