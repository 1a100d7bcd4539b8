// "host:port" texts.
#include <arpa/inet.h>
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "kit/datagram_text.h"
#include "kit/router.h"

namespace {

constexpr int kBadHost = -1;
constexpr int kBadPort = -2;

// The result of one call: "0 127.0.0.1:80 length 16".
std::string resolve(const std::string& text, const char* protocol = "udp") {
  sockaddr_in address;
  std::memset(&address, 0x5A, sizeof address);
  int length = sizeof address;
  std::string copy = text;
  std::string protocolCopy = protocol == nullptr ? "" : protocol;
  const int result = mkaddr(&address, &length, copy.data(), protocol == nullptr ? nullptr : protocolCopy.data());
  EXPECT_EQ(copy, text) << "the caller's text is not changed";
  EXPECT_EQ(address.sin_family, AF_INET);
  const unsigned char zero[8] = {};
  EXPECT_EQ(std::memcmp(address.sin_zero, zero, sizeof zero), 0);
  return std::to_string(result) + " " + kit::addressText(reinterpret_cast<sockaddr*>(&address));
}

}  // namespace

TEST(AddressTest, HostsAndPorts) {
  const struct {
    const char* text;
    const char* expected;
  } kRows[] = {
      {"127.255.255.4:8888", "0 127.255.255.4:8888"},
      {"127.0.0.1", "0 127.0.0.1:0"},
      {"", "0 0.0.0.0:0"},
      {":", "0 0.0.0.0:0"},
      {"*", "0 0.0.0.0:0"},
      {"*:*", "0 0.0.0.0:0"},
      {"*:80", "0 0.0.0.0:80"},
      {"127.0.0.1:*", "0 127.0.0.1:0"},
      {"127.0.0.1:", "0 127.0.0.1:0"},
      // Leading separators are skipped, so what follows them is the host.
      {":8888", "0 0.0.34.184:0"},
      {"::80", "0 0.0.0.80:0"},
      // Dotted texts follow the loose rules: fewer parts, other bases, a trailing blank.
      {"127.1:5", "0 127.0.0.1:5"},
      {"0x7f.1:5", "0 127.0.0.1:5"},
      {"8888:5", "0 0.0.34.184:5"},
      {"127.0.0.1 :5", "0 127.0.0.1:5"},
      {"255.255.255.255:5", "0 255.255.255.255:5"},
      {"router.home:80", "0 127.9.8.7:80"},
      {"router.home", "0 127.9.8.7:0"},
      {"127.0.0.1:tembra", "0 127.0.0.1:4321"},
      // The port ends at a newline.
      {"127.0.0.1:80\nrest", "0 127.0.0.1:80"},
      {"127.0.0.1:\n", "0 127.0.0.1:0"},
  };
  for (const auto& row : kRows) EXPECT_EQ(resolve(row.text), row.expected) << '"' << row.text << '"';
}

TEST(AddressTest, PortsFromZeroTo32767) {
  EXPECT_EQ(resolve("*:0"), "0 0.0.0.0:0");
  EXPECT_EQ(resolve("*:1"), "0 0.0.0.0:1");
  EXPECT_EQ(resolve("*:32767"), "0 0.0.0.0:32767");
  EXPECT_EQ(resolve("*:00080"), "0 0.0.0.0:80");
}

TEST(AddressTest, BadPorts) {
  for (const char* port : {"32768", "65535", "65536", "99999999999999999999", "8888x", "80 ", "8 0", "0x50", "-1", "+1",
                           " 80", ":80", "http-of-nobody", "80:80"}) {
    EXPECT_EQ(resolve(std::string("127.0.0.1:") + port), "-2 127.0.0.1:0") << '"' << port << '"';
  }
}

TEST(AddressTest, ABadDottedHostLeavesAllOnes) {
  for (const char* host : {"256.1.1.1", "1.2.3.4x", "08.1.1.1", "1.2.3.4.5", "1..2", "9999999999"}) {
    EXPECT_EQ(resolve(std::string(host) + ":80"), "-1 255.255.255.255:0") << '"' << host << '"';
  }
}

TEST(AddressTest, AnUnknownHostLeavesZero) {
  for (const char* host : {"nobody.home", "six.home", " 127.0.0.1", "-1", "x127.0.0.1"}) {
    EXPECT_EQ(resolve(std::string(host) + ":80"), "-1 0.0.0.0:0") << '"' << host << '"';
  }
}

TEST(AddressTest, AServiceIsLookedUpWithTheProtocol) {
  EXPECT_EQ(resolve("*:tembra", "udp"), "0 0.0.0.0:4321");
  EXPECT_EQ(resolve("*:tembra", "tcp"), "0 0.0.0.0:1234");
  EXPECT_EQ(resolve("*:tembra", nullptr), "0 0.0.0.0:1234") << "no protocol means tcp";
  EXPECT_EQ(resolve("*:tembra", "sctp"), "-2 0.0.0.0:0");
}

namespace {

struct Cleared {
  unsigned char bytes[40];
  int length;
  int result;
};

Cleared resolveInto(int length, const char* text) {
  Cleared cleared{};
  std::memset(cleared.bytes, 0x5A, sizeof cleared.bytes);
  cleared.length = length;
  std::string copy = text;
  char udp[] = "udp";
  cleared.result = mkaddr(cleared.bytes, &cleared.length, copy.data(), udp);
  return cleared;
}

int firstUntouched(const Cleared& cleared) {
  int at = 8;  // behind family, port and address, which are always written
  while (at < 40 && cleared.bytes[at] == 0) ++at;
  return at;
}

}  // namespace

TEST(AddressTest, ClearsAsManyBytesAsTheCallerSays) {
  constexpr struct {
    int length;
    int cleared;
  } kRows[] = {{40, 40}, {32, 32}, {17, 17}, {16, 16}, {12, 12}, {-1, 16}, {-2147483647, 16}};
  for (const auto& row : kRows) {
    EXPECT_EQ(firstUntouched(resolveInto(row.length, "127.0.0.1:80")), row.cleared) << row.length;
  }
}

TEST(AddressTest, TheLengthBecomes16OnSuccessOnly) {
  EXPECT_EQ(resolveInto(32, "127.0.0.1:80").length, 16);
  EXPECT_EQ(resolveInto(0, "127.0.0.1:80").length, 16);
  EXPECT_EQ(resolveInto(32, "256.1.1.1:80").length, 32);
  EXPECT_EQ(resolveInto(32, "256.1.1.1:80").result, kBadHost);
  EXPECT_EQ(resolveInto(32, "127.0.0.1:x").length, 32);
  EXPECT_EQ(resolveInto(32, "127.0.0.1:x").result, kBadPort);
}

TEST(AddressTest, IsPrintedWithItsNewlines) {
  sockaddr_in address{};
  address.sin_port = htons(8888);
  inet_pton(AF_INET, "127.255.255.4", &address.sin_addr);
  testing::internal::CaptureStdout();
  const int count = printAddrInfo(address);
  const std::string printed = testing::internal::GetCapturedStdout();
  EXPECT_EQ(printed, "\n\n *** Addr 127.255.255.4 \n *** port 8888 \n\n");
  EXPECT_EQ(count, static_cast<int>(printed.size()));
}
