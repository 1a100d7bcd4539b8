// A datagram to the library as people write it down: "zwave 1036 02", "127.0.0.66:8888 12 7c".
#ifndef TEMBRA_SIM_CORE_RAW_DATAGRAM_H
#define TEMBRA_SIM_CORE_RAW_DATAGRAM_H

#include <netinet/in.h>

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "sim/core/journal.h"

namespace tembra::sim {

struct RawDatagram {
  std::string sender;    ///< "zwave", "zigbee", "hue", "nest" or "ha"; empty: a stranger
  sockaddr_in stranger;  ///< whose address this is
  std::vector<unsigned char> bytes;
};

/// SENDER LENGTH DIGITS: hexadecimal digits; zeros follow them up to the length. Throws std::invalid_argument.
RawDatagram rawDatagramFrom(const std::string& text);

/// The same text, without the digits of the zeros at the end.
std::string rawDatagramText(std::string_view sender, std::span<const unsigned char> bytes);

/// Sends from any address that nobody has. Throws one sentence.
void sendFrom(const sockaddr_in& sender, std::span<const unsigned char> bytes, std::string_view what, Journal& journal);

}  // namespace tembra::sim

#endif
