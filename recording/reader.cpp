#include "recording/reader.h"

#include <algorithm>
#include <cmath>
#include <istream>
#include <stdexcept>
#include <utility>

#include "recording/packet.h"
#include "recording/pcapng.h"

namespace tembra::recording {
namespace {

constexpr std::uint32_t kPcap = 0xA1B2C3D4;
constexpr std::uint32_t kPcapOfNanoseconds = 0xA1B23C4D;

constexpr std::size_t kLongestBlock = 16 << 20;  // as Wireshark's own reader has it
constexpr std::size_t kMostInterfaces = 1000;
constexpr std::size_t kMostCommentBytes = 16 << 20;

[[noreturn]] void refuse(const std::string& sentence) { throw std::runtime_error(sentence); }

std::size_t padded(std::size_t length) { return (length + 3) / 4 * 4; }

std::uint64_t ticksPerSecond(unsigned char resolution) {
  constexpr unsigned char ofTwo = 0x80;
  const int exponent = resolution & ~ofTwo;
  if (exponent > ((resolution & ofTwo) != 0 ? 63 : 19)) refuse("the recording's clock is too fine");
  std::uint64_t ticks = 1;
  for (int i = 0; i < exponent; ++i) ticks *= (resolution & ofTwo) != 0 ? 2 : 10;
  return ticks;
}

std::chrono::microseconds timeOf(std::uint64_t ticks, std::uint64_t perSecond) {
  constexpr std::uint64_t latest = 1'000'000'000'000;  // seconds
  const auto part = static_cast<long double>(ticks % perSecond) / static_cast<long double>(perSecond);
  return std::chrono::seconds(std::min(ticks / perSecond, latest)) +
         std::chrono::microseconds(std::llround(part * 1e6L));
}

}  // namespace

Reader::Reader(std::istream& stream) : stream_(stream) {
  constexpr std::size_t magicBytes = 4;
  if (!read(magicBytes)) refuse("no recording: the file ends at once");
  const std::uint32_t magic = word32(0);
  if (magic == kSection) {
    if (!read(magicBytes)) refuse("no recording: the file ends at once");
    beginSection();
    return;
  }
  isPcapng_ = false;
  isBigEndian_ = magic != kPcap && magic != kPcapOfNanoseconds;
  const std::uint32_t turned = word32(0);
  if (turned != kPcap && turned != kPcapOfNanoseconds) refuse("no recording: neither pcapng nor pcap");
  beginPcap(turned);
}

// The byte order is known only behind the length.
void Reader::beginSection() {
  const Bytes length = block_;
  if (!read(4)) refuse("the recording ends within its beginning");
  isBigEndian_ = false;
  if (word32(0) != kByteOrder) isBigEndian_ = true;
  if (word32(0) != kByteOrder) refuse("the recording is damaged: a section without a byte order");
  block_ = length;
  const std::size_t total = lengthOfBlock(word32(0));
  constexpr std::size_t head = 12;
  constexpr std::size_t fixed = 12;  // version and length of the section
  if (total < head + fixed + 4) refuse("the recording is damaged: a short section");
  interfaces_.clear();
  if (!read(total - head)) return;
  dropEnd(total);
  keepComments(fixed, false);
}

void Reader::beginPcap(std::uint32_t magic) {
  if (!read(20)) refuse("the recording ends within its beginning");
  constexpr std::uint32_t linkTypeBits = 0xFFFF;
  interfaces_.push_back({static_cast<int>(word32(16) & linkTypeBits),
                         magic == kPcap ? std::uint64_t{1'000'000} : std::uint64_t{1'000'000'000}});
}

std::optional<Datagram> Reader::next() {
  do {
    if (found_) return std::exchange(found_, std::nullopt);
    isWithinBlock_ = false;
  } while (isPcapng_ ? nextBlock() : nextRecord());
  return std::nullopt;
}

std::size_t Reader::lengthOfBlock(std::uint32_t length) {
  constexpr std::size_t shortest = 12;
  if (length < shortest || length > kLongestBlock || length % 4 != 0) {
    refuse("the recording is damaged: a block of " + std::to_string(length) + " bytes behind packet " +
           std::to_string(packets_));
  }
  return length;
}

// A block has its length at both ends.
void Reader::dropEnd(std::size_t length) {
  if (word32(block_.size() - 4) != length) {
    refuse("the recording is damaged: a block without its end behind packet " + std::to_string(packets_));
  }
  block_.resize(block_.size() - 4);
}

bool Reader::nextBlock() {
  if (!read(4)) return false;
  const std::uint32_t type = word32(0);
  if (!read(4)) return false;
  if (type == kSection) {
    beginSection();
    return true;
  }
  const std::size_t length = lengthOfBlock(word32(0));
  if (!read(length - 8)) return false;
  dropEnd(length);
  takeBlock(type);
  return true;
}

void Reader::takeBlock(std::uint32_t type) {
  switch (type) {
    case kInterface:
      return addInterface();
    case kStatistics:
      return takeStatistics();
    case kPacket:
      return takePacket({.data = 20, .captured = 12, .time = 4, .hasInterface = true, .isShortNumber = false});
    case kOldPacket:
      return takePacket({.data = 20, .captured = 12, .time = 4, .hasInterface = true, .isShortNumber = true});
    case kSimplePacket:
      return takePacket({.data = 4, .captured = 0, .time = 0, .hasInterface = false, .isShortNumber = false});
    default:
      return;
  }
}

void Reader::addInterface() {
  constexpr std::size_t fixed = 8;
  constexpr std::uint64_t microseconds = 1'000'000;
  if (block_.size() < fixed || interfaces_.size() == kMostInterfaces) refuse("the recording's interfaces are damaged");
  interfaces_.push_back({word16(0), microseconds});
  forEachOption(fixed, [this](std::uint16_t code, std::size_t offset, std::size_t length) {
    if (code == kResolution && length == 1) interfaces_.back().ticksPerSecond = ticksPerSecond(block_[offset]);
  });
}

// A simple packet has neither interface nor time nor options, and the length that it had before it was cut.
void Reader::takePacket(const PacketLayout& layout) {
  ++packets_;
  if (block_.size() < layout.data) refusePacket("is short");
  const std::size_t interface = !layout.hasInterface ? 0 : layout.isShortNumber ? word16(0) : word32(0);
  if (interface >= interfaces_.size()) refusePacket("is of no interface");
  const std::size_t room = block_.size() - layout.data;
  const std::size_t captured = word32(layout.captured);
  if (layout.hasInterface) {
    if (captured > room) refusePacket("does not fit its block");
    keepTime(interface, layout.time);
    keepComments(layout.data + padded(captured), true);
  }
  keepDatagram(interfaces_[interface].linkType, layout.data, std::min(captured, room));
}

void Reader::takeStatistics() {
  constexpr std::size_t fixed = 12;
  if (block_.size() < fixed || word32(0) >= interfaces_.size()) return;
  keepTime(word32(0), 4);
  keepComments(fixed, false);
}

void Reader::keepTime(std::size_t interface, std::size_t offset) {
  const std::uint64_t ticks = std::uint64_t{word32(offset)} << 32 | word32(offset + 4);
  time_ = timeOf(ticks, interfaces_[interface].ticksPerSecond);
}

void Reader::refusePacket(const char* what) const {
  refuse("the recording is damaged: packet " + std::to_string(packets_) + " " + what);
}

bool Reader::nextRecord() {
  constexpr std::size_t header = 16;
  if (!read(header)) return false;
  ++packets_;
  const std::uint64_t ticks = word32(0) * interfaces_[0].ticksPerSecond + word32(4);
  time_ = timeOf(ticks, interfaces_[0].ticksPerSecond);
  const std::size_t captured = word32(8);
  if (captured > kLongestBlock) {
    refusePacket("is too long");
  }
  if (!read(captured)) return false;
  keepDatagram(interfaces_[0].linkType, 0, captured);
  return true;
}

void Reader::keepDatagram(int linkType, std::size_t offset, std::size_t length) {
  const auto udp = udpDatagramIn(linkType, PacketBytes(block_).subspan(offset, length));
  if (!udp) return;
  found_ = Datagram{packets_, time_, udp->from, udp->to, Bytes(udp->payload.begin(), udp->payload.end()), udp->isWhole};
}

// What does not fit its block is passed over: options add, and decide nothing.
template <typename Take>
void Reader::forEachOption(std::size_t offset, Take take) {
  while (offset + 4 <= block_.size()) {
    const std::uint16_t code = word16(offset);
    const std::size_t length = word16(offset + 2);
    offset += 4;
    if (code == kEndOfOptions || length > block_.size() - offset) return;
    take(code, offset, length);
    offset += padded(length);
  }
}

void Reader::keepComments(std::size_t offset, bool isOfPacket) {
  forEachOption(offset, [this, isOfPacket](std::uint16_t code, std::size_t at, std::size_t length) {
    if (code != kComment || commentBytes_ + length > kMostCommentBytes) return;
    commentBytes_ += length;
    comments_.push_back({{reinterpret_cast<const char*>(block_.data()) + at, length}, time_, isOfPacket});
  });
}

std::vector<Comment> Reader::takeComments() {
  commentBytes_ = 0;
  return std::exchange(comments_, {});
}

// In pieces: a length that lies takes no more memory than the file has bytes.
bool Reader::read(std::size_t length) {
  constexpr std::size_t piece = 64 << 10;
  block_.clear();
  while (block_.size() < length) {
    const std::size_t before = block_.size();
    block_.resize(std::min(length, before + piece));
    stream_.read(reinterpret_cast<char*>(block_.data() + before), static_cast<std::streamsize>(block_.size() - before));
    const auto count = static_cast<std::size_t>(stream_.gcount());
    isWithinBlock_ = isWithinBlock_ || count > 0;
    if (count == block_.size() - before) continue;
    wasCut_ = wasCut_ || isWithinBlock_;
    return false;
  }
  return true;
}

std::uint16_t Reader::word16(std::size_t offset) const {
  const unsigned low = block_.at(offset + (isBigEndian_ ? 1 : 0));
  const unsigned high = block_.at(offset + (isBigEndian_ ? 0 : 1));
  return static_cast<std::uint16_t>(high << 8 | low);
}

std::uint32_t Reader::word32(std::size_t offset) const {
  const std::uint32_t first = word16(offset);
  const std::uint32_t second = word16(offset + 2);
  return isBigEndian_ ? first << 16 | second : second << 16 | first;
}

}  // namespace tembra::recording
