#include "sim/hue/bridges.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <nlohmann/json.hpp>

#include "sim/core/record_bytes.h"

namespace tembra::sim {
namespace {

// Ids of bridges are made of MAC addresses; these begin as only locally administered ones do.
std::string idOf(int number) {
  std::array<char, sizeof "02a1b2fffe0c0001"> id{};
  std::snprintf(id.data(), id.size(), "02a1b2fffe0c%04x", static_cast<unsigned>(number) & 0xFFFFU);
  return id.data();
}

}  // namespace

void HueBridges::resize(int count) {
  bridges_.clear();
  for (int number = 1; number <= count; ++number) {
    bridges_.push_back({idOf(number), "192.168.1." + std::to_string(100 + number)});
  }
}

bool HueBridges::has(std::string_view id) const {
  return std::any_of(bridges_.begin(), bridges_.end(), [id](const Bridge& bridge) { return bridge.id == id; });
}

void HueBridges::list(HueAnswer& answer) const {
  answer.count = count();
  for (std::size_t i = 0; i < bridges_.size(); ++i) {
    const nlohmann::ordered_json entry{{"id", bridges_[i].id}, {"internalipaddress", bridges_[i].address}};
    setText(answer.entries[i].json, entry.dump());
  }
}

}  // namespace tembra::sim
