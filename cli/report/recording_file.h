// A recording (pcapng) whose datagrams and comments can be changed in place.
#ifndef TEMBRA_CLI_RECORDING_FILE_H
#define TEMBRA_CLI_RECORDING_FILE_H

#include <cstdint>
#include <string>
#include <vector>

namespace tembra::cli::report {

/// A datagram of the recording; its bytes may be overwritten.
struct Datagram {
  std::uint32_t from = 0;  ///< addresses as numbers: 127.0.0.1 is 0x7F000001
  std::uint32_t to = 0;
  char* bytes = nullptr;
  std::size_t size = 0;
};

/// A comment or another text.
struct RecordedText {
  char* bytes = nullptr;
  std::size_t size = 0;
};

class RecordingFile {
 public:
  /// Keeps the UDP datagrams over IPv4, the interfaces, the statistics and all comments, and nothing else.
  /// @throws std::runtime_error with the end of a sentence, "it is no recording"
  explicit RecordingFile(const std::string& bytes);

  /// Valid as long as this object is.
  [[nodiscard]] std::vector<Datagram> datagrams();
  [[nodiscard]] std::vector<RecordedText> texts();

  [[nodiscard]] const std::string& bytes() const { return kept_; }

 private:
  struct Place {
    std::size_t offset;
    std::size_t size;
    std::uint32_t from = 0;
    std::uint32_t to = 0;
  };

  void keepBlock(std::uint32_t type, const std::string& block);
  bool keepPacket(const std::string& block, std::size_t& options);
  void keepTexts(const std::string& block, std::size_t options);

  std::string kept_;
  std::vector<int> links_;  ///< of the interfaces
  std::vector<Place> datagrams_;
  std::vector<Place> texts_;
};

}  // namespace tembra::cli::report

#endif
