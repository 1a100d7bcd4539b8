// A recording in a report: read as whatever recorder wrote it, and written anew.
#ifndef TEMBRA_CLI_RECORDING_PART_H
#define TEMBRA_CLI_RECORDING_PART_H

#include <optional>
#include <string>
#include <vector>

#include "recording/reader.h"

namespace tembra::cli::report {

struct RecordedMoment {
  std::vector<recording::Comment> comments;     ///< the datagram's, and those since the one before
  std::optional<recording::Datagram> datagram;  ///< none: the end of the recording
};

struct Recorded {
  std::vector<RecordedMoment> moments;
  bool isCut = false;  ///< the file ends in the middle of a block
};

/// The system's own datagrams, and all comments. Throws one sentence when the bytes are no recording.
[[nodiscard]] Recorded recordedIn(const std::string& recording);

/// As a recording that Wireshark reads.
[[nodiscard]] std::string recordingOf(const std::vector<RecordedMoment>& moments);

}  // namespace tembra::cli::report

#endif
