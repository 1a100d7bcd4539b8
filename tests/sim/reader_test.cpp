// Recordings of every recorder are read, and no file can do the reader harm.
#include "recording/reader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <random>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "recording/recorder.h"
#include "sim/core/sockets.h"
#include "support/recording_maker.h"

namespace tembra::sim::test {
namespace {

using Recorded = recording::Datagram;
using recording::Reader;

struct Read {
  std::vector<Recorded> datagrams;
  std::vector<std::string> comments;
  std::string refusal;
  bool wasCut = false;
};

Read readAll(std::istream& stream) {
  Read all;
  try {
    Reader reader(stream);
    for (auto datagram = reader.next(); datagram; datagram = reader.next()) all.datagrams.push_back(*datagram);
    for (const recording::Comment& comment : reader.takeComments()) all.comments.push_back(comment.text);
    all.wasCut = reader.wasCut();
  } catch (const std::runtime_error& failure) {
    all.refusal = failure.what();
  }
  return all;
}

Read readAll(const std::string& file) {
  std::istringstream stream(file);
  return readAll(stream);
}

std::string payloadOf(const Recorded& datagram) { return {datagram.payload.begin(), datagram.payload.end()}; }

bool isAt(const sockaddr_in& address, const Endpoint& endpoint) {
  const sockaddr_in there = addressOf(endpoint);
  return address.sin_addr.s_addr == there.sin_addr.s_addr && address.sin_port == there.sin_port;
}

TEST(Reader, ReadsWhatTheRecorderWrote) {
  {
    recording::Recorder recorder("/tmp/file");
    recorder.remark("one");
    recorder.remark("two");
    const std::string text = "odd";
    recorder.datagram(addressOf(kLibrary), addressOf(kHaServer),
                      {reinterpret_cast<const unsigned char*>(text.data()), text.size()});
    recorder.datagram(addressOf(kZwaveServer), addressOf(kLibrary), {});
    recorder.remark("the end");
  }
  std::ifstream file("/tmp/file", std::ios::binary);
  const Read all = readAll(file);
  ASSERT_EQ(all.datagrams.size(), 2U) << all.refusal;
  EXPECT_EQ(payloadOf(all.datagrams[0]), "odd");
  EXPECT_TRUE(isAt(all.datagrams[0].from, kLibrary) && isAt(all.datagrams[0].to, kHaServer));
  EXPECT_EQ(payloadOf(all.datagrams[1]), "");
  EXPECT_TRUE(isAt(all.datagrams[1].from, kZwaveServer) && isAt(all.datagrams[1].to, kLibrary));
  EXPECT_LE(all.datagrams[0].time, all.datagrams[1].time);
  EXPECT_TRUE(all.datagrams[0].isWhole && all.datagrams[1].isWhole);
  EXPECT_EQ(all.comments, (std::vector<std::string>{"one\ntwo", "the end"}));
}

std::vector<Framed> framings() {
  const std::string macs(12, '\0');
  return {
      {"NullOfALittleMachine", 0, std::string("\2\0\0\0", 4)},
      {"NullOfABigMachine", 0, std::string("\0\0\0\2", 4)},
      {"Ethernet", 1, macs + std::string("\x08\0", 2)},
      {"EthernetWithATag", 1, macs + std::string("\x81\0\0\1\x08\0", 6)},
      {"RawOfBsd", 12, ""},
      {"RawOfOpenBsd", 14, ""},
      {"Raw", 101, ""},
      {"Loop", 108, std::string("\0\0\0\2", 4)},
      {"Cooked", 113, std::string(14, '\0') + std::string("\x08\0", 2)},
      {"Ipv4", 228, ""},
      {"CookedToo", 276, std::string("\x08\0", 2) + std::string(18, '\0')},
  };
}

// The same packet two seconds and a quarter after the beginning of time, in every kind of file.
std::vector<std::string> filesOf(std::uint16_t linkType, const std::string& packet) {
  std::vector<std::string> files;
  for (const Order order : {Order::kLittle, Order::kBig}) {
    files.push_back(pcapngSection(order) + pcapngInterface(order, linkType) + pcapngPacket(order, 2'250'000, packet));
    const std::string nanoseconds = option(order, 9, "\x09") + option(order, 0, "");
    files.push_back(pcapngSection(order) + pcapngInterface(order, linkType, nanoseconds) +
                    pcapngPacket(order, 2'250'000'000, packet));
    const std::string powerOfTwo = option(order, 9, "\x83");
    files.push_back(pcapngSection(order) + pcapngInterface(order, linkType, powerOfTwo) +
                    pcapngPacket(order, 18, packet));
    files.push_back(pcap(order, 0xA1B2C3D4, linkType) + pcapPacket(order, 2, 250'000, packet));
    files.push_back(pcap(order, 0xA1B23C4D, linkType) + pcapPacket(order, 2, 250'000'000, packet));
  }
  return files;
}

TEST(Reader, ReadsEveryLinkTypeInEveryKindOfFile) {
  for (const Framed& framing : framings()) {
    int number = 0;
    for (const std::string& file : filesOf(framing.linkType, framing.header + ipv4("hello") + "trailer")) {
      SCOPED_TRACE(framing.name + std::string(" ") + std::to_string(number++));
      const Read all = readAll(file);
      ASSERT_EQ(all.datagrams.size(), 1U) << all.refusal;
      EXPECT_EQ(payloadOf(all.datagrams[0]), "hello");
      EXPECT_EQ(all.datagrams[0].time, std::chrono::milliseconds(2250));
      EXPECT_TRUE(isAt(all.datagrams[0].from, kZwaveServer) && isAt(all.datagrams[0].to, kLibrary));
    }
  }
}

TEST(Reader, ReadsBlocksWithoutInterfaceOrOptionsToo) {
  constexpr Order order = Order::kLittle;
  const std::string packet = ipv4("hello");
  const std::string start = pcapngSection(order) + pcapngInterface(order, 228);
  const auto length = static_cast<std::uint32_t>(packet.size());
  const std::string simple = pcapngBlock(order, 3, ByteWriter(order).word32(length).add(packet).bytes());
  ByteWriter old(order);
  old.word16(0).word16(7).word32(0).word32(2'250'000).word32(length).word32(length).add(packet);
  const Read all = readAll(start + simple + pcapngBlock(order, 2, old.bytes()) + pcapngBlock(order, 0xBAD, "custom"));
  ASSERT_EQ(all.datagrams.size(), 2U) << all.refusal;
  EXPECT_EQ(payloadOf(all.datagrams[0]), "hello");
  EXPECT_EQ(payloadOf(all.datagrams[1]), "hello");
  EXPECT_EQ(all.datagrams[1].time, std::chrono::milliseconds(2250));
}

TEST(Reader, ReadsASecondSectionOfTheOtherByteOrder) {
  std::string file;
  for (const Order order : {Order::kLittle, Order::kBig}) {
    file += pcapngSection(order) + pcapngInterface(order, 228) + pcapngPacket(order, 1, ipv4("hello"));
  }
  EXPECT_EQ(readAll(file).datagrams.size(), 2U);
}

TEST(Reader, KeepsTheCommentsOfEveryBlockThatHasSome) {
  constexpr Order order = Order::kBig;
  const std::string comments = option(order, 1, "first") + option(order, 7, "no comment") + option(order, 1, "second");
  const Read all =
      readAll(pcapngSection(order) + pcapngInterface(order, 1) + pcapngPacket(order, 1, "short", comments) +
              pcapngBlock(order, 5, std::string(12, '\0') + option(order, 1, "third")));
  EXPECT_TRUE(all.datagrams.empty());
  EXPECT_EQ(all.comments, (std::vector<std::string>{"first", "second", "third"}));
}

TEST(Reader, PassesOverWhatIsNoDatagram) {
  constexpr Order order = Order::kLittle;
  std::string file = pcapngSection(order) + pcapngInterface(order, 228);
  std::string six = ipv4("hello");
  six[0] = 0x65;
  std::string noHeader = ipv4("hello");
  noHeader[0] = 0x44;
  std::string noLength = ipv4("hello");
  noLength[25] = 7;
  for (const std::string& packet : {six, ipv4("tcp", 0, 6), ipv4("first part", 0x2000), ipv4("last part", 0x00B9),
                                    noHeader, noLength, ipv4("").substr(0, 27), std::string("x"), std::string()}) {
    file += pcapngPacket(order, 1, packet);
  }
  const Read all = readAll(file + pcapngPacket(order, 1, ipv4("hello")));
  ASSERT_EQ(all.datagrams.size(), 1U) << all.refusal;
  EXPECT_EQ(all.datagrams[0].packet, 10U) << "the number that Wireshark shows";
  EXPECT_TRUE(readAll(pcap(order, 0xA1B2C3D4, 147) + pcapPacket(order, 1, 1, ipv4("hello"))).datagrams.empty());
}

TEST(Reader, SaysThatADatagramWasCut) {
  constexpr Order order = Order::kLittle;
  const std::string cut = ipv4("hello").substr(0, 30);
  const Read all = readAll(pcap(order, 0xA1B2C3D4, 101) + pcapPacket(order, 1, 1, cut));
  ASSERT_EQ(all.datagrams.size(), 1U) << all.refusal;
  EXPECT_EQ(payloadOf(all.datagrams[0]), "he");
  EXPECT_FALSE(all.datagrams[0].isWhole);
}

// Its recorder was killed, or its disk was full.
TEST(Reader, TellsThatAFileEndsWithinABlockAndTakesItAsEnded) {
  constexpr Order order = Order::kLittle;
  const std::string section = pcapngSection(order);
  const std::pair<std::string, std::string> files[] = {
      {section + pcapngInterface(order, 228), pcapngPacket(order, 1, ipv4("hello"))},
      {pcap(order, 0xA1B2C3D4, 228), pcapPacket(order, 1, 1, ipv4("hello"))}};
  for (const auto& [start, packet] : files) {
    for (std::size_t more = 0; more < packet.size(); ++more) {
      const Read all = readAll(start + packet + packet.substr(0, more));
      ASSERT_EQ(all.datagrams.size(), 1U) << more << " bytes more: " << all.refusal;
      ASSERT_EQ(all.wasCut, more > 0) << more << " bytes more";
    }
  }
  EXPECT_TRUE(readAll(section.substr(0, section.size() - 1)).wasCut);
}

struct Bad {
  std::string file;
  std::string refusal;
};

std::vector<Bad> badFiles() {
  constexpr Order order = Order::kLittle;
  const std::string start = pcapngSection(order) + pcapngInterface(order, 228);
  const std::string packet = pcapngPacket(order, 1, ipv4("hello"));
  std::string otherEnd = packet;
  otherEnd[otherEnd.size() - 4] ^= 4;
  std::string tooMuch = packet;
  tooMuch[20] = 127;
  return {
      {"", "no recording: the file ends at once"},
      {"abc", "no recording: the file ends at once"},
      {"[\n  {\"on\": \"add\"}\n]", "no recording: neither pcapng nor pcap"},
      {"\x0a\x0d\x0d\x0a", "no recording: the file ends at once"},
      {std::string("\x0a\x0d\x0d\x0a\x1c\0\0\0oops", 12), "the recording is damaged: a section without a byte order"},
      {std::string("\xd4\xc3\xb2\xa1\2\0\4\0", 8), "the recording ends within its beginning"},
      {start + std::string("\6\0\0\0\x0c\0\0\1", 8),
       "the recording is damaged: a block of 16777228 bytes behind packet 0"},
      {start + packet + std::string("\6\0\0\0\x0b\0\0\0", 8),
       "the recording is damaged: a block of 11 bytes behind packet 1"},
      {start + otherEnd, "the recording is damaged: a block without its end behind packet 0"},
      {start + tooMuch, "the recording is damaged: packet 1 does not fit its block"},
      {start + pcapngBlock(order, 6, "short"), "the recording is damaged: packet 1 is short"},
      {pcapngSection(order) + packet, "the recording is damaged: packet 1 is of no interface"},
      {pcapngSection(order) + pcapngBlock(order, 1, "four"), "the recording's interfaces are damaged"},
      {pcapngSection(order) + pcapngInterface(order, 1, option(order, 9, "\x7f")), "the recording's clock is too fine"},
      {pcap(order, 0xA1B2C3D4, 1) + pcapPacket(order, 1, 1, "").substr(0, 8) + std::string(8, '\x7f'),
       "the recording is damaged: packet 1 is too long"},
  };
}

TEST(Reader, RefusesABadFileInOneSentence) {
  for (const Bad& bad : badFiles()) EXPECT_EQ(readAll(bad.file).refusal, bad.refusal);
}

// Small lies and cuts, of a good file each time.
TEST(Reader, SurvivesAnyFile) {
  std::mt19937 chance(16);  // NOLINT: the same files each time
  std::vector<std::string> seeds;
  for (const Framed& framing : framings()) {
    for (const std::string& file : filesOf(framing.linkType, framing.header + ipv4("hello"))) {
      seeds.push_back(file + file.substr(file.size() / 2));
    }
  }
  for (int round = 0; round < 40'000; ++round) {
    std::string file = seeds[chance() % seeds.size()];
    for (unsigned changes = chance() % 8; changes > 0; --changes) {
      const unsigned char values[] = {0, 1, 0x7F, 0x80, 0xFF, static_cast<unsigned char>(chance())};
      file[chance() % file.size()] = static_cast<char>(values[chance() % std::size(values)]);
    }
    file.resize(chance() % (file.size() + 1));
    const Read all = readAll(file);
    std::size_t kept = 0;
    for (const Recorded& datagram : all.datagrams) kept += datagram.payload.size();
    for (const std::string& comment : all.comments) kept += comment.size();
    ASSERT_LE(kept, file.size());
    ASSERT_EQ(all.refusal.find('\n'), std::string::npos);
  }
}

}  // namespace
}  // namespace tembra::sim::test
