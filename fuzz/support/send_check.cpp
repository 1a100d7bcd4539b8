#include "support/send_check.h"

#include <arpa/inet.h>

#include <algorithm>
#include <cstring>
#include <string_view>

#include "support/invariant.h"

namespace fuzz {
namespace {

template <typename Record>
void checkText(const Record& record, const char* text, std::size_t size) {
  const auto offset = static_cast<std::size_t>(text - reinterpret_cast<const char*>(&record));
  const std::size_t length = strnlen(text, size);
  require(length < size, "texts of a datagram end");
  require(isZero(&record, offset + length, offset + size), "zeros stand behind the texts of a datagram");
}

void checkZigbee(const ZigbeeCommand& command) {
  checkText(command, command.command, sizeof command.command);
  checkText(command, command.argument, sizeof command.argument);
}

void checkZwave(const ZwaveCommand& command) {
  require(isZero(command.at0, 0, sizeof command.at0) && isZero(command.at196, 0, sizeof command.at196) &&
              isZero(command.at216, 0, sizeof command.at216),
          "a Z-Wave command is zero but for its two words");
  require(command.operation == 1 || command.operation == 4 || command.operation == 5, "Z-Wave operations are known");
}

void checkHue(const HueCommand& command) {
  require(isZero(command.at0, 0, sizeof command.at0) && isZero(command.at224, 0, sizeof command.at224),
          "a Hue command is zero but for its fields");
  checkText(command, command.argument, sizeof command.argument);
  require(isTerminated(command.bridgeId), "the bridge id ends");
}

void checkNest(const NestCommand& command) {
  require(command.at0 == 0, "a Nest command begins with zero");
  checkText(command, command.text, sizeof command.text);
}

void checkHa(const HaNotice& notice) {
  static constexpr std::string_view kDropAll = "removeAllDevices";
  if (notice.recordKind == RECORD_ZWAVE) {
    require(isZero(notice.record, sizeof(ZwNodeInfo), sizeof notice.record), "zeros stand behind a Z-Wave node");
    return;
  }
  require(notice.recordKind == RECORD_ZIGBEE, "kinds of notices are known");
  const bool dropsAll = std::memcmp(notice.record, kDropAll.data(), kDropAll.size() + 1) == 0;
  require(isZero(notice.record, dropsAll ? kDropAll.size() : sizeof(ZbDeviceInfo), sizeof notice.record),
          "zeros stand behind a ZigBee device");
}

template <typename Record, void (*Check)(const Record&)>
void checkAs(const void* datagram) {
  Record record;
  std::memcpy(&record, datagram, sizeof record);
  Check(record);
}

struct Destination {
  const char* host;
  in_port_t port;
  std::size_t length;
  void (*check)(const void*);
};

constexpr Destination kDestinations[] = {
    {"127.255.255.253", 8888, sizeof(ZigbeeCommand), &checkAs<ZigbeeCommand, checkZigbee>},
    {"127.255.255.254", 8888, sizeof(ZwaveCommand), &checkAs<ZwaveCommand, checkZwave>},
    {"127.255.255.252", 8888, sizeof(HueCommand), &checkAs<HueCommand, checkHue>},
    {"127.255.255.251", 8888, sizeof(NestCommand), &checkAs<NestCommand, checkNest>},
    {"127.255.255.1", 9999, sizeof(HaNotice), &checkAs<HaNotice, checkHa>},
};

const Destination& destinationOf(const Send& send) {
  require(send.address.sin_family == AF_INET, "sends go to IPv4 addresses");
  const auto* destination = std::ranges::find_if(kDestinations, [&](const Destination& row) {
    return send.address.sin_addr.s_addr == inet_addr(row.host) && send.address.sin_port == htons(row.port);
  });
  require(destination != std::end(kDestinations), "sends go to the daemons");
  return *destination;
}

}  // namespace

void checkSend(const Send& send) {
  require(send.length == destinationOf(send).length, "sends have their destination's length");
  unsigned char all[sizeof(HaNotice)];
  std::memcpy(all, send.datagram, send.length);
}

void checkOwnSend(const Send& send) { destinationOf(send).check(send.datagram); }

}  // namespace fuzz
