#include "kit/datagram_text.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <tembra/records.h>
#include <tembra/vocabulary.h>

#include <cstring>

namespace kit {
namespace {

constexpr struct {
  const char* address;
  const char* name;
} kEndpoints[] = {{"127.255.255.253:8888", "zigbee"},
                  {"127.255.255.254:8888", "zwave"},
                  {"127.255.255.252:8888", "hue"},
                  {"127.255.255.251:8888", "nest"},
                  {"127.255.255.1:9999", "ha"}};

template <typename Record>
Record recordOf(const unsigned char* bytes) {
  Record record;
  std::memcpy(&record, bytes, sizeof record);
  return record;
}

template <std::size_t Size>
std::string quoted(const char (&field)[Size]) {
  return '"' + visible({field, strnlen(field, Size)}) + '"';
}

std::string number(long value) { return std::to_string(value); }

std::string strayBytes(const Bytes& bytes, const Bytes& shown) {
  std::string stray;
  if (bytes == shown) return stray;
  for (std::size_t at = 0; at < bytes.size(); ++at) {
    if (bytes[at] != shown[at]) stray += " stray @" + number(static_cast<long>(at));
  }
  return stray;
}

// The datagram of which the text tells everything.
template <typename Record>
Bytes bytesOf(const Record& record) {
  const auto* first = reinterpret_cast<const unsigned char*>(&record);
  return {first, first + sizeof record};
}

std::string zigbeeText(const Bytes& bytes) {
  const auto command = recordOf<ZigbeeCommand>(bytes.data());
  ZigbeeCommand shown{};
  std::strncpy(shown.command, command.command, sizeof shown.command);
  std::strncpy(shown.argument, command.argument, sizeof shown.argument);
  return quoted(command.command) + " @180 " + quoted(command.argument) + strayBytes(bytes, bytesOf(shown));
}

std::string zwaveText(const Bytes& bytes) {
  const auto command = recordOf<ZwaveCommand>(bytes.data());
  ZwaveCommand shown{};
  shown.operation = command.operation;
  shown.controllerCommand = command.controllerCommand;
  return "op " + number(command.operation) + " cmd " + number(command.controllerCommand) +
         strayBytes(bytes, bytesOf(shown));
}

template <typename Record>
std::string behindRecord(const Bytes& bytes) {
  HaNotice shown{};
  std::memcpy(&shown, bytes.data(), offsetof(HaNotice, record) + sizeof(Record));
  return strayBytes(bytes, bytesOf(shown));
}

std::string zwaveNoticeText(const Bytes& bytes) {
  const auto node = recordOf<ZwNodeInfo>(bytes.data() + offsetof(HaNotice, record));
  return "zwave node " + number(node.nodeId) + " kind " + number(node.deviceKind) + " type " + number(node.finalType) +
         " mark " + number(node.requestMark) + " name " + quoted(node.name) + " location " + quoted(node.location) +
         behindRecord<ZwNodeInfo>(bytes);
}

std::string zigbeeNoticeText(const Bytes& bytes) {
  const auto device = recordOf<ZbDeviceInfo>(bytes.data() + offsetof(HaNotice, record));
  return "zigbee address " + number(device.shortAddress) + " message " + number(device.msgCode) + " type " +
         number(device.devType) + " name " + quoted(device.name) + " location " + quoted(device.location) +
         behindRecord<ZbDeviceInfo>(bytes);
}

std::string haText(const Bytes& bytes) {
  constexpr char removeAll[] = "removeAllDevices";
  const auto notice = recordOf<HaNotice>(bytes.data());
  if (notice.recordKind == RECORD_ZWAVE) return zwaveNoticeText(bytes);
  if (notice.recordKind != RECORD_ZIGBEE) return "kind " + number(notice.recordKind);
  if (std::memcmp(notice.record, removeAll, sizeof removeAll) != 0) return zigbeeNoticeText(bytes);
  return '"' + std::string(removeAll) + '"' + behindRecord<char[sizeof removeAll]>(bytes);
}

constexpr struct {
  const char* destination;
  std::size_t length;
  std::string (*text)(const Bytes&);
} kTexts[] = {{"zigbee", sizeof(ZigbeeCommand), &zigbeeText},
              {"zwave", sizeof(ZwaveCommand), &zwaveText},
              {"ha", sizeof(HaNotice), &haText}};

}  // namespace

std::string addressText(const sockaddr* address) {
  const auto* internet = reinterpret_cast<const sockaddr_in*>(address);
  char dotted[INET_ADDRSTRLEN] = {};
  inet_ntop(AF_INET, &internet->sin_addr, dotted, sizeof dotted);
  return std::string(dotted) + ":" + std::to_string(ntohs(internet->sin_port));
}

std::string endpointName(const sockaddr* address) {
  std::string text = addressText(address);
  for (const auto& endpoint : kEndpoints) {
    if (text == endpoint.address) return endpoint.name;
  }
  return text;
}

std::string datagramText(const Datagram& datagram) {
  std::string head = datagram.destination + " " + std::to_string(datagram.bytes.size());
  for (const auto& row : kTexts) {
    if (datagram.destination == row.destination && datagram.bytes.size() == row.length) {
      return head + " " + row.text(datagram.bytes);
    }
  }
  return head;
}

}  // namespace kit
