// Files of other recorders, made byte by byte.
#ifndef TEMBRA_TESTS_SIM_SUPPORT_RECORDING_MAKER_H
#define TEMBRA_TESTS_SIM_SUPPORT_RECORDING_MAKER_H

#include <cstdint>
#include <string>
#include <string_view>

namespace tembra::sim::test {

enum class Order { kLittle, kBig };

/// A text of bytes that grows by numbers in its byte order.
class ByteWriter {
 public:
  explicit ByteWriter(Order order) : order_(order) {}

  ByteWriter& word16(std::uint16_t number) { return put(number, 2); }
  ByteWriter& word32(std::uint32_t number) { return put(number, 4); }
  ByteWriter& add(std::string_view bytes) { return bytes_.append(bytes), *this; }
  ByteWriter& pad() { return bytes_.resize((bytes_.size() + 3) / 4 * 4), *this; }
  [[nodiscard]] const std::string& bytes() const { return bytes_; }

 private:
  ByteWriter& put(std::uint32_t number, int size) {
    for (int i = 0; i < size; ++i) {
      bytes_ += static_cast<char>(number >> 8 * (order_ == Order::kLittle ? i : size - 1 - i));
    }
    return *this;
  }

  Order order_;
  std::string bytes_;
};

/// "\x7f\xff\xff\xfe" and a port, which is in network byte order.
struct Place {
  std::string_view address;
  std::uint16_t port;
};

inline constexpr Place kLibraryPlace{{"\x7f\xff\xff\x04", 4}, 8888};
inline constexpr Place kZwavePlace{{"\x7f\xff\xff\xfe", 4}, 8888};

/// From the Z-Wave server to the library.
inline std::string ipv4(std::string_view payload, std::uint16_t fragment = 0, std::uint16_t protocol = 17) {
  ByteWriter udp(Order::kBig);
  udp.word16(kZwavePlace.port).word16(kLibraryPlace.port);
  udp.word16(static_cast<std::uint16_t>(8 + payload.size())).word16(0).add(payload);
  ByteWriter packet(Order::kBig);
  packet.word16(0x4500).word16(static_cast<std::uint16_t>(20 + udp.bytes().size())).word16(1).word16(fragment);
  packet.word16(static_cast<std::uint16_t>(64 << 8 | protocol)).word16(0);
  return packet.add(kZwavePlace.address).add(kLibraryPlace.address).add(udp.bytes()).bytes();
}

/// A packet in front of which a link type has its header.
struct Framed {
  const char* name;
  std::uint16_t linkType;
  std::string header;
};

inline std::string pcapngBlock(Order order, std::uint32_t type, const std::string& body) {
  ByteWriter padded(order);
  padded.add(body).pad();
  const auto length = static_cast<std::uint32_t>(padded.bytes().size() + 12);
  return ByteWriter(order).word32(type).word32(length).add(padded.bytes()).word32(length).bytes();
}

inline std::string pcapngSection(Order order) {
  ByteWriter body(order);
  body.word32(0x1A2B3C4D).word16(1).word16(0).word32(0xFFFFFFFF).word32(0xFFFFFFFF);
  return pcapngBlock(order, 0x0A0D0D0A, body.bytes());
}

/// @param options as they stand in the block
inline std::string pcapngInterface(Order order, std::uint16_t linkType, const std::string& options = "") {
  return pcapngBlock(order, 1, ByteWriter(order).word16(linkType).word16(0).word32(0).add(options).bytes());
}

inline std::string option(Order order, std::uint16_t code, std::string_view value) {
  return ByteWriter(order).word16(code).word16(static_cast<std::uint16_t>(value.size())).add(value).pad().bytes();
}

inline std::string pcapngPacket(Order order, std::uint64_t ticks, const std::string& packet,
                                const std::string& options = "") {
  ByteWriter body(order);
  body.word32(0).word32(static_cast<std::uint32_t>(ticks >> 32)).word32(static_cast<std::uint32_t>(ticks));
  const auto length = static_cast<std::uint32_t>(packet.size());
  body.word32(length).word32(length).add(packet).pad().add(options);
  return pcapngBlock(order, 6, body.bytes());
}

inline std::string pcap(Order order, std::uint32_t magic, std::uint16_t linkType) {
  ByteWriter head(order);
  return head.word32(magic).word16(2).word16(4).word32(0).word32(0).word32(262144).word32(linkType).bytes();
}

inline std::string pcapPacket(Order order, std::uint32_t seconds, std::uint32_t part, const std::string& packet) {
  const auto length = static_cast<std::uint32_t>(packet.size());
  return ByteWriter(order).word32(seconds).word32(part).word32(length).word32(length).add(packet).bytes();
}

}  // namespace tembra::sim::test

#endif
