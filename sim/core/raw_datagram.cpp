#include "sim/core/raw_datagram.h"

#include <arpa/inet.h>
#include <sys/socket.h>

#include <algorithm>
#include <iterator>
#include <sstream>
#include <stdexcept>

#include "recording/hexadecimal.h"
#include "sim/core/number.h"
#include "sim/core/sockets.h"

namespace tembra::sim {
namespace {

constexpr int kLongestUdp = 65507;  // of UDP

sockaddr_in addressFrom(const std::string& text) {
  constexpr int largestPort = 65535;
  const std::size_t colon = std::min(text.find(':'), text.size());
  sockaddr_in address{};
  address.sin_family = AF_INET;
  if (colon == text.size() || inet_pton(AF_INET, text.substr(0, colon).c_str(), &address.sin_addr) != 1) {
    throw std::invalid_argument("\"" + text + "\" sends nothing; zwave, zigbee, hue, nest, ha or ADDRESS:PORT do");
  }
  address.sin_port = htons(static_cast<in_port_t>(parseNumber(text.substr(colon + 1), 1, largestPort)));
  return address;
}

}  // namespace

RawDatagram rawDatagramFrom(const std::string& text) {
  constexpr std::string_view servers[] = {"zwave", "zigbee", "hue", "nest", "ha"};
  std::istringstream words(text);
  std::string sender;
  std::string length;
  std::string digits;
  words >> sender >> length >> digits;
  RawDatagram datagram{};
  if (std::find(std::begin(servers), std::end(servers), sender) != std::end(servers)) datagram.sender = sender;
  if (datagram.sender.empty()) datagram.stranger = addressFrom(sender);
  const auto size = static_cast<std::size_t>(parseNumber(length, 0, kLongestUdp));
  const auto bytes = recording::bytesFrom(digits);
  if (!bytes || bytes->size() > size || !(words >> std::ws).eof()) {
    throw std::invalid_argument("a datagram is SENDER LENGTH DIGITS, with at most LENGTH pairs of hexadecimal digits");
  }
  datagram.bytes = *bytes;
  datagram.bytes.resize(size);
  return datagram;
}

std::string rawDatagramText(std::string_view sender, std::span<const unsigned char> bytes) {
  std::size_t used = bytes.size();
  while (used > 0 && bytes[used - 1] == 0) --used;
  return std::string(sender) + " " + std::to_string(bytes.size()) + (used > 0 ? " " : "") +
         recording::hexadecimal(bytes.first(used));
}

void sendFrom(const sockaddr_in& sender, std::span<const unsigned char> bytes, std::string_view what,
              Journal& journal) {
  const Descriptor socket = boundSocket(sender, kStranger.name);
  const sockaddr_in library = addressOf(kLibrary);
  sendto(socket.get(), bytes.data(), bytes.size(), 0, reinterpret_cast<const sockaddr*>(&library), sizeof library);
  journal.said(kStranger.name, kLibrary.name, std::string(what) + " (" + std::to_string(bytes.size()) + " bytes)");
  journal.sent(sender, library, bytes);
}

}  // namespace tembra::sim
