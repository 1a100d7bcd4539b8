#include "cli/report/tar_file.h"

#include <cstdio>
#include <cstring>

namespace tembra::cli::report {
namespace {

constexpr std::size_t kBlock = 512;

struct Header {
  char name[100];
  char mode[8];
  char user[8];
  char group[8];
  char size[12];
  char time[12];
  char sum[8];
  char kind;
  char link[100];
  char mark[8];  ///< with its version
  char rest[247];
};
static_assert(sizeof(Header) == kBlock);

// Octal digits, with zeros in front and a NUL behind.
template <std::size_t Size>
void putOctal(char (&field)[Size], unsigned long long number) {
  for (std::size_t i = Size - 1; i-- > 0; number /= 8) field[i] = static_cast<char>('0' + number % 8);
}

Header headerOf(const Part& part, std::time_t now) {
  constexpr unsigned kMode = 0644;
  Header header{};
  part.name.copy(header.name, sizeof header.name - 1);
  putOctal(header.mode, kMode);
  putOctal(header.user, 0);
  putOctal(header.group, 0);
  putOctal(header.size, part.content.size());
  putOctal(header.time, static_cast<unsigned long long>(now));
  header.kind = '0';
  std::memcpy(header.mark,
              "ustar\0"
              "00",
              sizeof header.mark);
  std::memset(header.sum, ' ', sizeof header.sum);  // as it counts for the sum itself
  unsigned long long sum = 0;
  for (std::size_t i = 0; i < sizeof header; ++i) sum += reinterpret_cast<const unsigned char*>(&header)[i];
  putOctal(header.sum, sum);
  return header;
}

}  // namespace

std::string tarOf(const std::vector<Part>& parts, std::time_t now) {
  constexpr std::size_t kBlocksAtTheEnd = 2;
  std::string bytes;
  for (const Part& part : parts) {
    const Header header = headerOf(part, now);
    bytes.append(reinterpret_cast<const char*>(&header), sizeof header);
    bytes += part.content;
    bytes.resize((bytes.size() + kBlock - 1) / kBlock * kBlock);
  }
  bytes.resize(bytes.size() + kBlocksAtTheEnd * kBlock);
  return bytes;
}

}  // namespace tembra::cli::report
