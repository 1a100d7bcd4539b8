#include "cli/report/datagram_secrets.h"

#include <tembra/records.h>
#include <tembra/vocabulary.h>

#include <algorithm>
#include <cstring>

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
#undef TEMBRA_FIELD

int recordKindOf(const Datagram& datagram) {
  int kind = kAnyRecord;
  if (datagram.size >= sizeof kind) std::memcpy(&kind, datagram.bytes, sizeof kind);
  return kind;
}

template <typename Visit>
void forEachField(const Datagram& datagram, Visit visit) {
  for (const Field& field : kFields) {
    const bool isOfServer = (field.isSentThere ? datagram.to : datagram.from) == field.server;
    const bool isOfKind = field.recordKind == kAnyRecord || field.recordKind == recordKindOf(datagram);
    if (!isOfServer || !isOfKind || field.offset >= datagram.size) continue;
    visit(field.secret, datagram.bytes + field.offset, std::min(field.size, datagram.size - field.offset));
  }
}

std::string textIn(const char* bytes, std::size_t size) { return {bytes, strnlen(bytes, size)}; }

}  // namespace

void learnFrom(const Datagram& datagram, StandIns& standIns) {
  forEachField(datagram, [&standIns](Secret secret, const char* bytes, std::size_t size) {
    standIns.learn(secret, textIn(bytes, size));
  });
  standIns.learnMacs({datagram.bytes, datagram.size});
}

void replaceIn(const Datagram& datagram, const StandIns& standIns) {
  forEachField(datagram, [&standIns](Secret /*secret*/, char* bytes, std::size_t size) {
    const std::string standIn = standIns.of(textIn(bytes, size));
    std::memset(bytes, 0, size);
    standIn.copy(bytes, size);
  });
  standIns.replaceIn(datagram.bytes, datagram.size);
}

}  // namespace tembra::cli::report
