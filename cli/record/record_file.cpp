#include "cli/record/record_file.h"

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <limits>
#include <stdexcept>
#include <utility>

#include "cli/commands/history_text.h"
#include "cli/failure.h"
#include "cli/record/holders.h"
#include "platform/printable.h"
#include "recording/recorder.h"

namespace tembra::cli {
namespace {

/// For Wireshark: lines become comments of the next datagram.
class DatagramFile : public RecordFile {
 public:
  DatagramFile(const std::filesystem::path& file, const std::vector<std::string>& facts) : recorder_(file) {
    for (const std::string& fact : facts) recorder_.fact(fact);
  }

  // A sentence for people; an event stands behind it for programs, too.
  void line(long long time, const std::string& line) override {
    const bool isEvent = line.find(R"("event":{)") != std::string::npos;
    recorder_.remark(printable(timedEntryText(time, line)) + (isEvent ? "\n" + line : ""));
  }
  void datagram(const Datagram& datagram) override {
    recorder_.datagram(datagram.from, datagram.to, datagram.payload, datagram.time);
  }
  void end() override { recorder_.end(); }
  [[nodiscard]] std::uintmax_t size() const override { return recorder_.size(); }
  [[nodiscard]] std::string trouble() const override { return recorder_.trouble(); }

 private:
  recording::Recorder recorder_;
};

/// The lines as they came.
class LineFile : public RecordFile {
 public:
  explicit LineFile(const std::filesystem::path& file)
      : name_(file), file_(file, std::ios::trunc), error_(file_ ? 0 : errno) {
    if (!file_) throw std::runtime_error(trouble());
  }

  void line(long long /*time*/, const std::string& line) override {
    errno = 0;
    file_ << line << '\n' << std::flush;
    if (!file_) error_ = errno;
    size_ += line.size() + 1;
  }
  void datagram(const Datagram& /*datagram*/) override {}
  void end() override { file_.flush(); }
  [[nodiscard]] std::uintmax_t size() const override { return size_; }
  [[nodiscard]] std::string trouble() const override { return file_ ? "" : recording::writingTrouble(name_, error_); }

 private:
  const std::filesystem::path name_;
  std::ofstream file_;
  int error_;
  std::uintmax_t size_ = 0;
};

}  // namespace

Recording::Recording(std::filesystem::path file, bool hasDatagrams, std::uintmax_t ring, Facts facts)
    : path_(std::move(file)), hasDatagrams_(hasDatagrams), ring_(ring), facts_(std::move(facts)) {
  std::error_code failure;
  if (ring_ != 0) std::filesystem::remove(path_.string() + ".1", failure);  // of another recording
  open();
}

void Recording::open() try {
  file_.reset();
  if (hasDatagrams_) {
    file_ = std::make_unique<DatagramFile>(path_, facts_());
  } else {
    file_ = std::make_unique<LineFile>(path_);
  }
  using std::filesystem::perms;
  std::error_code failure;
  if (std::filesystem::is_regular_file(path_, failure)) {  // an old file keeps its mode
    std::filesystem::permissions(path_, perms::owner_read | perms::owner_write, failure);
  }
} catch (const std::runtime_error& failure) {
  throw Failure(kFailed, std::string(failure.what()) + ".");
}

void Recording::line(long long time, std::string line) {
  waiting_.emplace(time, Item{std::move(line), {}, steadyClock()});
}

void Recording::datagram(Datagram datagram) {
  const long long time = datagram.time;
  waiting_.emplace(time, Item{"", std::move(datagram), steadyClock()});
}

void Recording::flush(long long cameBefore) {
  const auto end = std::find_if(waiting_.rbegin(), waiting_.rend(), [cameBefore](const auto& each) {
                     return each.second.came < cameBefore;
                   }).base();
  while (waiting_.begin() != end) {
    write(waiting_.begin()->first, waiting_.begin()->second);
    waiting_.erase(waiting_.begin());
  }
}

void Recording::write(long long time, const Item& item) {
  if (ring_ != 0 && file_->size() >= ring_ / 2) {
    file_->end();
    std::error_code ignored;  // then the new file takes the old one's place
    std::filesystem::rename(path_, path_.string() + ".1", ignored);
    open();
  }
  const bool isLine = !item.line.empty();
  isLine ? file_->line(time, item.line) : file_->datagram(item.datagram);
  check();
  if (isLine) ++comments_;
  if (!isLine) ++datagrams_;
  if (!isLine || !hasDatagrams_) lines_ += std::exchange(comments_, 0);
}

void Recording::end() {
  flush(std::numeric_limits<long long>::max());
  file_->end();
  check();
  lines_ += std::exchange(comments_, 0);
}

std::string Recording::contents() const {
  const std::string datagrams = hasDatagrams_ ? std::to_string(datagrams_) + " datagrams and " : "";
  return datagrams + std::to_string(lines_) + " lines of front ends";
}

void Recording::check() const {
  const std::string trouble = file_->trouble();
  if (!trouble.empty()) throw Failure(kFailed, trouble + ". Recorded before: " + contents() + ".");
}

}  // namespace tembra::cli
