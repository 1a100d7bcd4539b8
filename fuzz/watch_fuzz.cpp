// What watchers say to the process that has the connection, and what that process says to watchers. The first byte says
// which, and how the lines of watchers are cut into pieces.
#include <cstdint>
#include <string>
#include <vector>

#include "frontend/watch/holder_line.h"
#include "frontend/watch/watcher_lines.h"
#include "support/invariant.h"

namespace {

using fuzz::require;
using tembra::frontend::HolderReport;
using tembra::frontend::kLongestLine;

constexpr std::uint8_t kHolder = 0;

struct Heard {
  std::vector<std::string> lines;
  bool isGood = true;
};

/// The lines, when they arrive so many bytes at a time.
Heard hear(std::string_view bytes, std::size_t piece) {
  Heard heard;
  tembra::frontend::WatcherLines lines;
  while (heard.isGood && !bytes.empty()) {
    heard.isGood = lines.add(bytes.substr(0, piece), [&](std::string_view line) { heard.lines.emplace_back(line); });
    bytes.remove_prefix(std::min(piece, bytes.size()));
  }
  return heard;
}

void sayToHolder(std::string_view bytes, std::size_t piece) {
  const Heard whole = hear(bytes, bytes.size() + 1);
  const Heard cut = hear(bytes, piece);
  require(whole.isGood == cut.isGood && whole.lines == cut.lines, "the pieces make no difference");
  std::string again;
  for (const std::string& line : whole.lines) {
    require(line.size() < kLongestLine, "no line is too long");
    again += line + '\n';
  }
  require(bytes.substr(0, again.size()) == again, "the lines are what was said");
  const std::string_view rest = bytes.substr(again.size());
  const bool isTooLong = std::min(rest.find('\n'), rest.size()) >= kLongestLine;
  require(whole.isGood != isTooLong, "the first line that is too long ends all");
  require(isTooLong || rest.find('\n') == std::string_view::npos, "no line is left");
}

void sayToWatcher(std::string_view bytes) {
  HolderReport report;
  if (!tembra::frontend::readHolderLine(bytes, report)) return;
  const std::string line = tembra::frontend::holderLine(report.holder, bytes);
  require(bytes.find('\n') != std::string_view::npos || line.find('\n') == std::string::npos, "a line is one line");
  HolderReport second;
  // The object stands one deeper in the new line, which may be one too deep.
  if (!tembra::frontend::readHolderLine(line, second)) return;
  require(second.holder.role == report.holder.role && second.holder.pid == report.holder.pid &&
              second.holder.since == report.holder.since,
          "numbers are read as they were written");
  require(tembra::frontend::holderLine(second.holder, bytes) == line, "texts are read as they were written");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::string_view bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
  data[0] == kHolder ? sayToWatcher(bytes) : sayToHolder(bytes, data[0]);
  return 0;
}
