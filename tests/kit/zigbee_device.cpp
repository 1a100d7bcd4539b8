#include "kit/zigbee_device.h"

#include <algorithm>
#include <cstring>

namespace kit {
namespace {

constexpr unsigned short kEndOfClusters = 0xFFFF;

template <std::size_t Size>
void fill(char (&field)[Size], std::string_view text) {
  std::fill(std::begin(field), std::end(field), '\0');
  std::memcpy(field, text.data(), std::min(text.size(), Size));
}

}  // namespace

ZigbeeDevice::ZigbeeDevice(unsigned short address) {
  info_.shortAddress = address;
  info_.clusters[0].cluster = kEndOfClusters;
}

ZigbeeDevice& ZigbeeDevice::status(int value) {
  info_.msgCode = static_cast<unsigned char>(value);
  return *this;
}

ZigbeeDevice& ZigbeeDevice::maker(std::string_view text) {
  fill(info_.manufacturer, text);
  return *this;
}

ZigbeeDevice& ZigbeeDevice::model(std::string_view text) {
  fill(info_.model, text);
  return *this;
}

ZigbeeDevice& ZigbeeDevice::zone(unsigned short type) {
  info_.zoneType = type;
  return *this;
}

ZigbeeDevice& ZigbeeDevice::cluster(unsigned short id, unsigned short endpoint) {
  if (clusters_ == std::size(info_.clusters)) return *this;
  info_.clusters[clusters_] = {id, endpoint};
  if (++clusters_ < std::size(info_.clusters)) info_.clusters[clusters_] = {kEndOfClusters, 0};
  return *this;
}

ZigbeeDevice& ZigbeeDevice::clusters(std::initializer_list<unsigned short> ids, unsigned short endpoint) {
  for (const unsigned short id : ids) cluster(id, endpoint);
  return *this;
}

Bytes ZigbeeDevice::bytes() const { return cutTo(sizeof info_); }

Bytes ZigbeeDevice::cutTo(std::size_t length) const {
  const auto* first = reinterpret_cast<const unsigned char*>(&info_);
  return {first, first + std::min(length, sizeof info_)};
}

}  // namespace kit
