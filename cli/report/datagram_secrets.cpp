#include "cli/report/datagram_secrets.h"

#include <tembra/records.h>
#include <tembra/vocabulary.h>

#include <algorithm>
#include <cstring>
#include <span>

#include "depot/keys.h"

namespace tembra::cli::report {
namespace {

constexpr std::uint32_t kHaServer = 0x7FFFFF01;
constexpr std::uint32_t kZwaveServer = 0x7FFFFFFE;
constexpr std::uint32_t kZigbeeServer = 0x7FFFFFFD;
constexpr std::uint32_t kHueServer = 0x7FFFFFFC;
constexpr std::uint32_t kNestServer = 0x7FFFFFFB;

constexpr int kAnyRecord = -1;
constexpr std::size_t kRecord = offsetof(HaNotice, record);

struct Field {
  std::uint32_t server;
  bool isSentThere;
  int recordKind;  ///< of a notice to the HA server
  Secret secret;
  std::size_t offset;
  std::size_t size;
};

#define TEMBRA_FIELD(record, field) offsetof(record, field), sizeof(record::field)
constexpr Field kFields[] = {
    {kHaServer, true, RECORD_ZWAVE, Secret::kName, kRecord + TEMBRA_FIELD(ZwNodeInfo, name)},
    {kHaServer, true, RECORD_ZWAVE, Secret::kPlace, kRecord + TEMBRA_FIELD(ZwNodeInfo, location)},
    {kHaServer, true, RECORD_ZIGBEE, Secret::kName, kRecord + TEMBRA_FIELD(ZbDeviceInfo, name)},
    {kHaServer, true, RECORD_ZIGBEE, Secret::kPlace, kRecord + TEMBRA_FIELD(ZbDeviceInfo, location)},
    {kZwaveServer, false, kAnyRecord, Secret::kName, TEMBRA_FIELD(ZwNodeInfo, name)},
    {kZwaveServer, false, kAnyRecord, Secret::kPlace, TEMBRA_FIELD(ZwNodeInfo, location)},
    {kZigbeeServer, false, kAnyRecord, Secret::kName, TEMBRA_FIELD(ZbDeviceInfo, name)},
    {kZigbeeServer, false, kAnyRecord, Secret::kPlace, TEMBRA_FIELD(ZbDeviceInfo, location)},
    {kHueServer, true, kAnyRecord, Secret::kUser, TEMBRA_FIELD(HueCommand, argument)},
    {kNestServer, true, kAnyRecord, Secret::kCode, TEMBRA_FIELD(NestCommand, text)},
};

int recordKindOf(const std::vector<unsigned char>& notice) {
  int kind = kAnyRecord;
  if (notice.size() >= sizeof kind) std::memcpy(&kind, notice.data(), sizeof kind);
  return kind;
}

/// @param Datagram may be const
template <typename Datagram, typename Visit>
void forEachField(Datagram& datagram, Visit visit) {
  for (const Field& field : kFields) {
    const sockaddr_in& server = field.isSentThere ? datagram.to : datagram.from;
    const bool isOfKind = field.recordKind == kAnyRecord || field.recordKind == recordKindOf(datagram.payload);
    if (ntohl(server.sin_addr.s_addr) != field.server || !isOfKind || field.offset >= datagram.payload.size()) continue;
    visit(field.secret, std::span(datagram.payload)
                            .subspan(field.offset)
                            .first(std::min(field.size, datagram.payload.size() - field.offset)));
  }
}

std::string textIn(std::span<const unsigned char> field) {
  return {field.begin(), std::find(field.begin(), field.end(), '\0')};
}

void replaceText(std::span<unsigned char> field, const StandIns& standIns) {
  const std::string standIn = standIns.of(textIn(field));
  std::fill(field.begin(), field.end(), 0);
  std::copy_n(standIn.begin(), std::min(standIn.size(), field.size()), field.begin());
}

// As much of a field as the value has.
std::span<unsigned char> partOf(std::span<unsigned char> value, std::size_t offset, std::size_t size) {
  offset = std::min(offset, value.size());
  return value.subspan(offset, std::min(size, value.size() - offset));
}

}  // namespace

void learnFrom(const recording::Datagram& datagram, StandIns& standIns) {
  forEachField(datagram, [&standIns](Secret secret, std::span<const unsigned char> field) {
    standIns.learn(secret, textIn(field));
  });
  standIns.learnMacs({reinterpret_cast<const char*>(datagram.payload.data()), datagram.payload.size()});
}

void replaceIn(recording::Datagram& datagram, const StandIns& standIns) {
  forEachField(datagram,
               [&standIns](Secret /*secret*/, std::span<unsigned char> field) { replaceText(field, standIns); });
  standIns.replaceIn(reinterpret_cast<char*>(datagram.payload.data()), datagram.payload.size());
}

bool replaceIn(recording::DatabaseRecord& record, const StandIns& standIns) {
  auto& [key, value] = record;
  if (key == depot::kNextIdKey || key == depot::kVersionKey) return true;
  if (key.find_first_not_of("0123456789.") != std::string::npos) return false;
  if (depot::isDeviceKey(key)) {
    replaceText(partOf(value, TEMBRA_FIELD(DeviceRecord, name)), standIns);
    for (const auto& own :
         {partOf(value, TEMBRA_FIELD(DeviceRecord, at372)), partOf(value, TEMBRA_FIELD(DeviceRecord, at404))}) {
      std::ranges::fill(own, 0);
    }
  } else {
    replaceText(partOf(value, TEMBRA_FIELD(IndexRecord, value)), standIns);
    std::ranges::fill(partOf(value, TEMBRA_FIELD(IndexRecord, at0)), 0);
  }
  standIns.replaceIn(reinterpret_cast<char*>(value.data()), value.size());
  return true;
}
#undef TEMBRA_FIELD

}  // namespace tembra::cli::report
