#include "campaign/story.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "campaign/command_text.h"

namespace campaign {
namespace {

struct Line {
  Time at;
  std::string text;
};

constexpr std::size_t kShownBytes = 12;

std::string datagramText(const Datagram& datagram) {
  std::string text = datagram.from + " -> " + datagram.to + "  " + std::to_string(datagram.bytes.size()) + " bytes ";
  if (datagram.from == kLibraryAddress) return text + commandText(datagram);
  for (std::size_t i = 0; i < std::min(datagram.bytes.size(), kShownBytes); ++i) {
    text.append(" ").append(std::to_string(datagram.bytes[i]));
  }
  return text;
}

std::vector<Line> linesOf(const Record& record) {
  std::vector<Line> lines;
  for (const Asked& asked : record.asked) {
    lines.push_back({asked.at, "router: " + asked.request + (asked.done ? ": " : ": refused: ") + asked.answer});
  }
  for (const Datagram& datagram : record.wire) lines.push_back({datagram.at, datagramText(datagram)});
  for (const SeenEvent& seen : record.seen) lines.push_back({seen.at, "front end: event " + std::to_string(seen.code)});
  if (record.interrupted) lines.push_back({*record.interrupted, "the front end is interrupted"});
  lines.push_back({record.ended, "the front end ends, status " + std::to_string(record.status)});
  std::stable_sort(lines.begin(), lines.end(), [](const Line& one, const Line& other) { return one.at < other.at; });
  return lines;
}

}  // namespace

std::string seconds(Time time) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%9.4f s", static_cast<double>(time) / static_cast<double>(kSecond));
  return text.data();
}

std::string story(const Record& record) {
  std::string text = "what happened in the step";
  text.append(" ").append(goalText(record.step));
  for (const Line& line : linesOf(record)) {
    text.append("\n  ").append(seconds(line.at - record.began)).append("  ").append(line.text);
  }
  return text;
}

}  // namespace campaign
