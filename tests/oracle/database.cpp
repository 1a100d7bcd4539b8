#include "database.h"
#include "offsets.h"

#include <algorithm>
#include <cstring>

namespace oracle {
namespace {

constexpr std::size_t kMostOfADevice = 512;
constexpr int kZwaveRadio = 2;

}  // namespace

const Row* Database::find(const std::string& key) const {
  const auto found = std::find_if(rows.begin(), rows.end(), [&](const Row& row) { return row.key == key; });
  return found == rows.end() ? nullptr : &*found;
}

std::vector<const Row*> Database::devices() const {
  std::vector<const Row*> found;
  for (const Row& row : rows) {
    if (row.key == "NextDevid" || row.key == "Version" || row.key.find('.') != std::string::npos) continue;
    found.push_back(&row);
  }
  return found;
}

std::optional<int> wordAt(const Row& row, std::size_t offset) {
  int word = 0;
  if (row.value.size() < offset + sizeof word) return {};
  std::memcpy(&word, row.value.data() + offset, sizeof word);
  return word;
}

std::string textAt(const Row& row, std::size_t offset) {
  const std::size_t end = std::min(row.value.size(), kMostOfADevice);
  if (offset >= end) return "";
  const auto* first = reinterpret_cast<const char*>(row.value.data()) + offset;
  return {first, strnlen(first, end - offset)};
}

bool isZwaveNode(const Row& row, int node) {
  const auto word = wordAt(row, kDeviceNode);
  return wordAt(row, kDeviceKind) == kZwaveRadio && word && (*word & 0xFF) == node;
}

bool isZigbeeAddress(const Row& row, int address) { return wordAt(row, kDeviceAddress) == address; }

}  // namespace oracle
