#include "rig/datagrams.h"

#include <tembra/records.h>

#include <cstdio>
#include <cstring>

namespace bench {
namespace {

template <typename Record>
std::vector<unsigned char> bytesOf(const Record& record) {
  std::vector<unsigned char> bytes(sizeof record);
  std::memcpy(bytes.data(), &record, sizeof record);
  return bytes;
}

std::vector<unsigned char> node(unsigned char id) {
  ZwNodeInfo node{};
  node.nodeId = id;
  node.commandClasses[0] = 0xFF;
  return bytesOf(node);
}

std::vector<unsigned char> zigbeeStatus(unsigned char status) {
  ZbDeviceInfo device{};
  device.shortAddress = 0x1a01;
  device.msgCode = status;
  device.clusters[0].cluster = 0xFFFF;
  return bytesOf(device);
}

std::vector<unsigned char> hueAnswer(int type, int bridges) {
  HueAnswer answer{};
  answer.type = type;
  answer.count = bridges;
  for (int i = 0; i < bridges; ++i) {
    std::snprintf(answer.entries[i].json, sizeof answer.entries[i].json,
                  R"({"id":"02a1b2fffe0a%02xff","internalipaddress":"192.168.10.42"})",
                  static_cast<unsigned>(i) & 0xFFU);
  }
  return bytesOf(answer);
}

std::vector<unsigned char> nestAnswer(int command, int status, int value) {
  return bytesOf(NestAnswer{command, status, value});
}

}  // namespace

std::vector<Datagram> datagramsOfAllFlows() {
  constexpr int bridges = 25;
  return {
      {"Z-Wave, nothing under way", SERVER_ZWAVE, ASSOC_IDLE, node(5)},
      {"Z-Wave, a node joins", SERVER_ZWAVE, ASSOC, node(5), SERVER_ZIGBEE},
      {"ZigBee, still adding", SERVER_ZIGBEE, ASSOC, zigbeeStatus(3)},
      {"ZigBee, a device joins", SERVER_ZIGBEE, ASSOC, zigbeeStatus(1), SERVER_ZWAVE},
      {"Hue, done", SERVER_HUE, ASSOC_IDLE, hueAnswer(8, 0)},
      {"Hue, a list of 25 bridges", SERVER_HUE, ASSOC_IDLE, hueAnswer(0, bridges), Datagram::kNobody, bridges},
      {"Nest, a status of no meaning", SERVER_NEST, ASSOC_IDLE, nestAnswer(124, 5, 0)},
      {"Nest, linked", SERVER_NEST, ASSOC_IDLE, nestAnswer(100, 0, 0)},
  };
}

Datagram shortDatagram(int value) { return {"gate", SERVER_NEST, ASSOC_IDLE, nestAnswer(100, 0, value)}; }

}  // namespace bench
