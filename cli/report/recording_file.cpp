#include "cli/report/recording_file.h"

#include <cstring>
#include <stdexcept>

namespace tembra::cli::report {
namespace {

constexpr std::uint32_t kSection = 0x0A0D0D0A;
constexpr std::uint32_t kInterface = 1;
constexpr std::uint32_t kStatistics = 5;
constexpr std::uint32_t kPacket = 6;
constexpr std::uint32_t kByteOrder = 0x1A2B3C4D;

// Offsets within a block, whose type and length take eight bytes at its begin; its length stands at its end, too.
constexpr std::size_t kBody = 8;
constexpr std::size_t kEnd = 4;
constexpr std::size_t kPacketData = kBody + 20;

template <typename Number>
Number read(const std::string& bytes, std::size_t at) {
  Number number{};
  if (at + sizeof number > bytes.size()) throw std::runtime_error("it is cut off");
  std::memcpy(&number, bytes.data() + at, sizeof number);
  return number;
}

std::uint32_t readBigEndian(const std::string& bytes, std::size_t at, std::size_t size) {
  std::uint32_t number = 0;
  for (std::size_t i = 0; i < size; ++i) number = number << 8U | read<unsigned char>(bytes, at + i);
  return number;
}

std::size_t padded(std::size_t size) { return (size + 3) / 4 * 4; }

// What stands in front of the IPv4 packet, by the kind of link; -1: a kind that is not known.
int lengthOfLink(int link) {
  constexpr int kEthernet = 1, kCooked = 113, kRawIp = 101, kIpv4 = 228, kCooked2 = 276;
  switch (link) {
    case kEthernet:
      return 14;
    case kCooked:
      return 16;
    case kCooked2:
      return 20;
    case kRawIp:
    case kIpv4:
      return 0;
    default:
      return -1;
  }
}

}  // namespace

RecordingFile::RecordingFile(const std::string& bytes) {
  if (bytes.size() < kBody + kEnd || read<std::uint32_t>(bytes, 0) != kSection ||
      read<std::uint32_t>(bytes, kBody) != kByteOrder) {
    throw std::runtime_error("it is no recording of a machine like this one");
  }
  for (std::size_t at = 0; at + kBody + kEnd <= bytes.size();) {
    const auto type = read<std::uint32_t>(bytes, at);
    const auto length = read<std::uint32_t>(bytes, at + 4);
    if (length < kBody + kEnd || length % 4 != 0 || length > bytes.size() - at)
      break;  // the last one may be half-written
    keepBlock(type, bytes.substr(at, length));
    at += length;
  }
  if (kept_.empty()) throw std::runtime_error("it is cut off");
}

void RecordingFile::keepBlock(std::uint32_t type, const std::string& block) {
  std::size_t options = 0;
  switch (type) {
    case kSection:
      links_.clear();
      options = kBody + 16;
      break;
    case kInterface:
      links_.push_back(read<std::uint16_t>(block, kBody));
      options = kBody + 8;
      break;
    case kStatistics:
      options = kBody + 12;
      break;
    case kPacket:
      if (!keepPacket(block, options)) return;
      break;
    default:
      return;
  }
  keepTexts(block, options);
  kept_ += block;
}

bool RecordingFile::keepPacket(const std::string& block, std::size_t& options) {
  constexpr std::size_t kUdpHeader = 8;
  constexpr unsigned char kUdp = 17;
  const auto interface = read<std::uint32_t>(block, kBody);
  const std::size_t length = read<std::uint32_t>(block, kBody + 12);
  const int link = interface < links_.size() ? lengthOfLink(links_[interface]) : -1;
  const std::size_t ip = kPacketData + static_cast<std::size_t>(link < 0 ? 0 : link);
  options = kPacketData + padded(length);
  if (link < 0 || options + kEnd > block.size() || ip + 20 > kPacketData + length) return false;
  const auto first = read<unsigned char>(block, ip);
  const std::size_t payload = ip + std::size_t{first & 0x0FU} * 4 + kUdpHeader;
  if (first >> 4U != 4 || read<unsigned char>(block, ip + 9) != kUdp || payload > kPacketData + length) return false;
  datagrams_.push_back({kept_.size() + payload, kPacketData + length - payload, readBigEndian(block, ip + 12, 4),
                        readBigEndian(block, ip + 16, 4)});
  return true;
}

void RecordingFile::keepTexts(const std::string& block, std::size_t options) {
  constexpr std::size_t kHead = 4;
  while (options + kHead + kEnd <= block.size()) {
    const auto kind = read<std::uint16_t>(block, options);
    const std::size_t length = read<std::uint16_t>(block, options + 2);
    if (kind == 0 || options + kHead + length + kEnd > block.size()) return;
    texts_.push_back({kept_.size() + options + kHead, length});
    options += kHead + padded(length);
  }
}

std::vector<Datagram> RecordingFile::datagrams() {
  std::vector<Datagram> all;
  for (const Place& place : datagrams_) all.push_back({place.from, place.to, kept_.data() + place.offset, place.size});
  return all;
}

std::vector<RecordedText> RecordingFile::texts() {
  std::vector<RecordedText> all;
  for (const Place& place : texts_) all.push_back({kept_.data() + place.offset, place.size});
  return all;
}

}  // namespace tembra::cli::report
