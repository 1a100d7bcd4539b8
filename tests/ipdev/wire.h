// Datagrams and payloads of the IP devices, byte by byte: what stands where is said here once more, without the
// library's records.
#ifndef TEMBRA_TESTS_IPDEV_WIRE_H
#define TEMBRA_TESTS_IPDEV_WIRE_H

#include <string>
#include <string_view>
#include <vector>

#include "kit/trace.h"

/// Zeros, and what is written into them.
class Wire {
 public:
  explicit Wire(std::size_t size) : bytes_(size) {}

  /// Four bytes, little-endian.
  Wire& number(std::size_t at, int value);

  /// The characters of a text; no NUL.
  Wire& text(std::size_t at, std::string_view characters);

  Wire& bytes(std::size_t at, const kit::Bytes& some);

  [[nodiscard]] const kit::Bytes& all() const { return bytes_; }

 private:
  kit::Bytes bytes_;
};

/// Answer of the Hue server: 3260 bytes, the result type at 0, the entry count at 4, entries of 65 bytes from 8.
kit::Bytes hueAnswer(int type, int count = 0, const std::vector<std::string>& entries = {});

/// Answer of the Nest server: 12 bytes.
kit::Bytes nestAnswer(int command, int status = 0, int value = 0);

/// A bridge of a bridge list.
struct Slot {
  std::string mac;
  std::string address;
};

/// Payload of the bridge-list event: 3256 bytes, MAC texts of 30 bytes at 0, addresses of 50 at 750, the count at 3252.
kit::Bytes bridgeList(const std::vector<Slot>& slots);

/// The whole payload of an event, 4096 bytes.
kit::Bytes payloadOf(const kit::RecordedEvent& recorded);

/// The payload from its start; zeros behind.
kit::Bytes payloadOf(const kit::Bytes& start);

#endif
