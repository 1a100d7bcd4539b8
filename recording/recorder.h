// Datagrams as a file that Wireshark reads (pcapng), with what happened around them as comments.
#ifndef TEMBRA_RECORDING_RECORDER_H
#define TEMBRA_RECORDING_RECORDER_H

#include <netinet/in.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <span>
#include <string>
#include <string_view>

namespace tembra::recording {

/// "cannot write the recording FILE (No space left on device)". @param error an errno; 0: it is not known
[[nodiscard]] std::string writingTrouble(const std::filesystem::path& file, int error);

class Recorder {
 public:
  /// Begins the file; throws one sentence when it cannot be written.
  explicit Recorder(const std::filesystem::path& file);
  /// Into a stream that lives longer.
  explicit Recorder(std::ostream& stream);
  Recorder(const Recorder&) = delete;
  Recorder& operator=(const Recorder&) = delete;
  ~Recorder() { end(); }

  /// A comment of no datagram, at once and with its own time.
  void fact(std::string_view text);
  /// @param time in microseconds since 1970
  void fact(std::string_view text, long long time);
  /// A comment of the next datagram.
  void remark(std::string_view text);
  /// A datagram of now.
  void datagram(const sockaddr_in& from, const sockaddr_in& to, std::span<const unsigned char> payload);
  /// @param time in microseconds since 1970
  void datagram(const sockaddr_in& from, const sockaddr_in& to, std::span<const unsigned char> payload, long long time);
  /// The last remarks become comments of the file's end.
  void end();

  /// Of the file so far, in bytes.
  [[nodiscard]] std::uintmax_t size() const { return size_; }

  /// One sentence when something could not be written, else empty. Nothing more is written then.
  [[nodiscard]] std::string trouble() const;

 private:
  void begin();
  void writeBlock(std::uint32_t type, const std::string& body);
  std::string takeRemarks();

  std::filesystem::path name_;
  std::ofstream file_;
  std::ostream& stream_;  ///< the file, or another
  int error_ = 0;         ///< of the first write that failed
  std::uintmax_t size_ = 0;
  std::string remarks_;  ///< one line each
};

}  // namespace tembra::recording

#endif
