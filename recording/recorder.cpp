#include "recording/recorder.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstring>
#include <limits>
#include <stdexcept>

#include "recording/pcapng.h"

namespace tembra::recording {
namespace {

constexpr std::uint16_t kLinkOfIpv4 = 228;
constexpr std::size_t kLongestComment = 60000;  // its length is a 16-bit number

template <typename Number>
void append(std::string& bytes, Number number) {
  bytes.append(reinterpret_cast<const char*>(&number),
               sizeof number);  // the file's own byte order is told at its start
}

template <typename Number>
void appendBigEndian(std::string& bytes, Number number) {
  for (int shift = static_cast<int>(8 * (sizeof number - 1)); shift >= 0; shift -= 8) {
    bytes += static_cast<char>(number >> shift & 0xFF);
  }
}

void pad(std::string& bytes) { bytes.resize((bytes.size() + 3) / 4 * 4); }

std::string optionsWith(const std::string& comment) {
  std::string options;
  if (comment.empty()) return options;
  append(options, kComment);
  append(options, static_cast<std::uint16_t>(comment.size()));
  options += comment;
  pad(options);
  append(options, kEndOfOptions);
  append(options, std::uint16_t{0});
  return options;
}

long long now() {
  using std::chrono::system_clock;
  return std::chrono::duration_cast<std::chrono::microseconds>(system_clock::now().time_since_epoch()).count();
}

void appendTime(std::string& bytes, long long time) {
  const auto count = static_cast<std::uint64_t>(time);
  append(bytes, static_cast<std::uint32_t>(count >> 32));
  append(bytes, static_cast<std::uint32_t>(count));
}

// Without check sums: loopback has none.
std::string packetOf(const sockaddr_in& from, const sockaddr_in& to, std::span<const unsigned char> payload) {
  constexpr std::size_t udpHeader = 8;
  constexpr std::size_t headers = 20 + udpHeader;
  payload = payload.first(std::min<std::size_t>(payload.size(), std::numeric_limits<std::uint16_t>::max() - headers));
  std::string packet{0x45, 0};
  appendBigEndian(packet, static_cast<std::uint16_t>(headers + payload.size()));
  appendBigEndian(packet, std::uint32_t{0});           // no fragment
  appendBigEndian(packet, std::uint32_t{0x40110000});  // time to live 64, UDP
  append(packet, from.sin_addr.s_addr);
  append(packet, to.sin_addr.s_addr);
  append(packet, from.sin_port);
  append(packet, to.sin_port);
  appendBigEndian(packet, static_cast<std::uint16_t>(udpHeader + payload.size()));
  appendBigEndian(packet, std::uint16_t{0});
  packet.append(payload.begin(), payload.end());
  return packet;
}

}  // namespace

std::string writingTrouble(const std::filesystem::path& file, int error) {
  const std::string what = "cannot write the recording " + file.string();
  return error == 0 ? what : what + " (" + std::strerror(error) + ")";
}

Recorder::Recorder(const std::filesystem::path& file)
    : name_(file), file_(file, std::ios::binary | std::ios::trunc), stream_(file_), error_(file_ ? 0 : errno) {
  begin();
}

Recorder::Recorder(std::ostream& stream) : stream_(stream) { begin(); }

void Recorder::begin() {
  std::string section;
  append(section, kByteOrder);
  append(section, std::uint16_t{1});
  append(section, std::uint16_t{0});
  append(section, std::int64_t{-1});  // its length is not known
  writeBlock(kSection, section);
  std::string interface;
  append(interface, kLinkOfIpv4);
  append(interface, std::uint16_t{0});
  append(interface, std::uint32_t{0});  // packets of any length
  writeBlock(kInterface, interface);
  if (!trouble().empty()) throw std::runtime_error(trouble());
}

void Recorder::end() { fact(takeRemarks()); }

void Recorder::fact(std::string_view text) { fact(text, now()); }

void Recorder::fact(std::string_view text, long long time) {
  const std::string options = optionsWith(std::string(text.substr(0, kLongestComment)));
  if (options.empty()) return;
  std::string statistics;
  append(statistics, std::uint32_t{0});
  appendTime(statistics, time);
  writeBlock(kStatistics, statistics + options);
}

std::string Recorder::trouble() const { return stream_ ? "" : writingTrouble(name_, error_); }

void Recorder::remark(std::string_view text) {
  if (remarks_.size() + text.size() < kLongestComment) remarks_.append(remarks_.empty() ? "" : "\n").append(text);
}

void Recorder::datagram(const sockaddr_in& from, const sockaddr_in& to, std::span<const unsigned char> payload) {
  datagram(from, to, payload, now());
}

void Recorder::datagram(const sockaddr_in& from, const sockaddr_in& to, std::span<const unsigned char> payload,
                        long long time) {
  std::string block;
  append(block, std::uint32_t{0});
  appendTime(block, time);
  std::string packet = packetOf(from, to, payload);
  append(block, static_cast<std::uint32_t>(packet.size()));
  append(block, static_cast<std::uint32_t>(packet.size()));
  block += packet;
  pad(block);
  writeBlock(kPacket, block + optionsWith(takeRemarks()));
}

// At once: a recording of a program that was killed can be read.
void Recorder::writeBlock(std::uint32_t type, const std::string& body) {
  std::string block;
  const auto length = static_cast<std::uint32_t>(body.size() + 12);
  append(block, type);
  append(block, length);
  block += body;
  append(block, length);
  size_ += block.size();
  if (!stream_) return;
  errno = 0;
  stream_.write(block.data(), static_cast<std::streamsize>(block.size())).flush();
  if (!stream_) error_ = errno;
}

std::string Recorder::takeRemarks() {
  std::string taken;
  taken.swap(remarks_);
  return taken;
}

}  // namespace tembra::recording
