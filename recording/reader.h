// Recordings of the loopback traffic, as Wireshark, tcpdump and the simulated router write them: pcapng and pcap in
// either byte order.
#ifndef TEMBRA_RECORDING_READER_H
#define TEMBRA_RECORDING_READER_H

#include <netinet/in.h>

#include <chrono>
#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

namespace tembra::recording {

struct Datagram {
  unsigned long packet;            ///< its number in the file from 1 on, as Wireshark shows it
  std::chrono::microseconds time;  ///< since some moment that all packets of the file share
  sockaddr_in from;
  sockaddr_in to;
  std::vector<unsigned char> payload;
  bool isWhole;  ///< else the recorder kept its beginning only
};

struct Comment {
  std::string text;
  std::chrono::microseconds time;  ///< of what it stands at, or of what stands before it
  bool isOfPacket;                 ///< else of the file, or of a moment in it
};

/// Reads a recording piece by piece: memory does not grow with its length.
class Reader {
 public:
  /// Throws one sentence when the stream holds no recording.
  explicit Reader(std::istream& stream);

  /// The next datagram of IPv4 that is no fragment; what else was recorded is passed over. Throws one sentence when the
  /// file is damaged. A file that ends within a block was written by a recorder that was killed: that is its end.
  std::optional<Datagram> next();

  /// The comments of the file so far, those of passed packets among them. They are forgotten when they are taken.
  std::vector<Comment> takeComments();

  /// Whether the file ended within a block: its recorder was killed, lost its power, or had no room.
  [[nodiscard]] bool wasCut() const { return wasCut_; }

 private:
  using Bytes = std::vector<unsigned char>;

  struct Interface {
    int linkType;
    std::uint64_t ticksPerSecond;
  };

  /// Where the parts of a kind of packet block stand.
  struct PacketLayout {
    std::size_t data;
    std::size_t captured;
    std::size_t time;
    bool hasInterface;
    bool isShortNumber;  ///< the interface's, of 16 bits
  };

  void beginSection();
  void beginPcap(std::uint32_t magic);
  /// False: the file ends.
  bool nextBlock();
  bool nextRecord();

  std::size_t lengthOfBlock(std::uint32_t length);
  void dropEnd(std::size_t length);
  void takeBlock(std::uint32_t type);
  void addInterface();
  void takePacket(const PacketLayout& layout);
  [[noreturn]] void refusePacket(const char* what) const;
  void keepDatagram(int linkType, std::size_t offset, std::size_t length);
  template <typename Take>
  void forEachOption(std::size_t offset, Take take);
  void takeStatistics();
  void keepTime(std::size_t interface, std::size_t offset);
  void keepComments(std::size_t offset, bool isOfPacket);

  bool read(std::size_t length);
  [[nodiscard]] std::uint16_t word16(std::size_t offset) const;
  [[nodiscard]] std::uint32_t word32(std::size_t offset) const;

  std::istream& stream_;
  Bytes block_;  ///< what was read last
  bool isWithinBlock_ = false;
  bool wasCut_ = false;
  bool isPcapng_ = true;
  bool isBigEndian_ = false;
  std::vector<Interface> interfaces_;
  unsigned long packets_ = 0;
  std::chrono::microseconds time_{0};
  std::optional<Datagram> found_;
  std::vector<Comment> comments_;
  std::size_t commentBytes_ = 0;
};

}  // namespace tembra::recording

#endif
