#include "cli/report/recording_part.h"

#include <sstream>
#include <utility>

#include "recording/recorder.h"

namespace tembra::cli::report {
namespace {

// A recorder of the loopback interface has heard other programs, too.
bool isOurs(const recording::Datagram& datagram) {
  constexpr std::uint32_t network = 0x7FFFFF00;  // 127.255.255.0
  constexpr std::uint32_t mask = 0xFFFFFF00;
  return (ntohl(datagram.from.sin_addr.s_addr) & mask) == network ||
         (ntohl(datagram.to.sin_addr.s_addr) & mask) == network;
}

}  // namespace

Recorded recordedIn(const std::string& recording) {
  std::istringstream stream(recording);
  recording::Reader reader(stream);
  Recorded all;
  while (auto datagram = reader.next()) {
    auto comments = reader.takeComments();
    if (isOurs(*datagram)) all.moments.push_back({std::move(comments), std::move(datagram)});
  }
  all.moments.push_back({reader.takeComments(), std::nullopt});
  all.isCut = reader.wasCut();
  return all;
}

std::string recordingOf(const std::vector<RecordedMoment>& moments) {
  std::ostringstream stream;
  recording::Recorder recorder(stream);
  for (const RecordedMoment& moment : moments) {
    for (const recording::Comment& comment : moment.comments) {
      comment.isOfPacket ? recorder.remark(comment.text) : recorder.fact(comment.text, comment.time.count());
    }
    if (!moment.datagram) continue;
    const recording::Datagram& datagram = *moment.datagram;
    recorder.datagram(datagram.from, datagram.to, datagram.payload, datagram.time.count());
  }
  recorder.end();
  return stream.str();
}

}  // namespace tembra::cli::report
