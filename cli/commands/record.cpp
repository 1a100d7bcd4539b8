// tembra-assoc record: the datagrams of the system, the events of its front ends and their log lines, in one file.
#include <sys/epoll.h>
#include <sys/stat.h>
#include <tembra/globals.h>

#include <CLI/CLI.hpp>
#include <cstring>
#include <nlohmann/json.hpp>
#include <optional>
#include <utility>
#include <vector>

#include "cli/commands/commands.h"
#include "cli/display/json_line.h"
#include "cli/display/terminal.h"
#include "cli/doctor/facts/database_snapshot.h"
#include "cli/failure.h"
#include "cli/record/capture.h"
#include "cli/record/holders.h"
#include "cli/record/record_file.h"
#include "platform/descriptor.h"
#include "recording/database_lines.h"

namespace tembra::cli {
namespace {

constexpr std::chrono::milliseconds kTurn{100};
constexpr long long kLatest = 300000;  // microseconds that an entry may take to come here
constexpr std::uintmax_t kMegabyte = 1000000;
constexpr mode_t kForNobodyElse = 0077;

struct Wanted {
  std::string file;
  bool eventsOnly = false;
  unsigned ring = 0;
};

class Recorder {
 public:
  Recorder(const Context& context, const Wanted& wanted)
      : context_(context), wanted_(wanted), holders_(context.options.watchPath) {
    umask(kForNobodyElse);  // names, users and codes are in it
    if (!wanted.eventsOnly) capture_.emplace();
    for (const int each : {holders_.descriptor(), capture_ ? capture_->descriptor() : Attention::kNoDescriptor}) {
      epoll_event event{};
      event.events = EPOLLIN;
      epoll_ctl(ready_.get(), EPOLL_CTL_ADD, each, &event);
    }
    readFirst();
  }

  void run() {
    tell("recording", "Recording into " + wanted_.file + " until Ctrl-C.", {{"file", wanted_.file}});
    try {
      while (true) {
        context_.attention.wait(ready_.get(), Attention::Input::kIgnored, kTurn);
        look();
        recording_->flush(steadyClock() - kLatest);
      }
    } catch (const Interrupted&) {
      end();  // its proper end
    }
  }

 private:
  // The file is begun when all is well: an old one is not given up for nothing.
  void readFirst() {
    std::vector<std::pair<long long, std::string>> first;
    const int error =
        holders_.read([&first](long long time, const std::string& line) { first.emplace_back(time, line); });
    if (error != 0) complainOnce(error);
    recording_.emplace(wanted_.file, !wanted_.eventsOnly, wanted_.ring * kMegabyte, [this] { return deviceLines(); });
    for (auto& [time, line] : first) recording_->line(time, std::move(line));
  }

  // The devices that a replay begins with.
  [[nodiscard]] std::vector<std::string> deviceLines() const {
    std::vector<std::string> lines;
    for (const recording::DatabaseRecord& record : doctor::readSnapshot(context_, DBName).contents) {
      lines.push_back(recording::lineOf(record));
    }
    return lines;
  }

  void look() {
    if (capture_) {
      capture_->read([this](Datagram datagram) { recording_->datagram(std::move(datagram)); });
    }
    const int error = holders_.read([this](long long time, const std::string& line) { recording_->line(time, line); });
    if (error != 0) complainOnce(error);
  }

  // Datagrams are worth a file without events.
  void complainOnce(int error) {
    const std::string why =
        "front ends at " + context_.options.watchPath + " cannot be watched: " + std::strerror(error) + ".";
    if (wanted_.eventsOnly) throw Failure(kFailed, why);
    if (!complained_) context_.display.complain(why);
    complained_ = true;
  }

  void end() {
    look();
    recording_->end();
    const unsigned lost = capture_ ? capture_->lost() : 0;
    tell("recorded",
         "Recorded " + recording_->contents() + "." +
             (lost == 0 ? "" : " The system lost " + std::to_string(lost) + " datagrams."),
         {{"file", wanted_.file},
          {"datagrams", recording_->datagrams()},
          {"lines", recording_->lines()},
          {"lost", lost}});
  }

  void tell(const std::string& event, const std::string& sentence, const nlohmann::ordered_json& members) const {
    context_.options.json ? printLine(jsonEvent(event, members)) : context_.display.note(sentence);
  }

  const Context& context_;
  const Wanted& wanted_;
  Holders holders_;
  const Descriptor ready_{epoll_create1(EPOLL_CLOEXEC)};
  std::optional<Capture> capture_;
  std::optional<Recording> recording_;
  bool complained_ = false;
};

}  // namespace

void declareRecord(CLI::App& program, Action& action) {
  CLI::App* record = program.add_subcommand(
      "record", "record datagrams, and what front ends do, into a file for Wireshark until Ctrl-C; needs root");
  auto wanted = std::make_shared<Wanted>();
  record->add_option("FILE", wanted->file, "the file, written anew")->required();
  record->add_flag("--events", wanted->eventsOnly,
                   "events and log lines of front ends alone, as lines of JSON; needs neither root nor libpcap");
  record->add_option("--ring", wanted->ring, "most megabytes: the newest half in FILE, the half before in FILE.1")
      ->check(CLI::Range(1U, 1000000U));
  record->callback(
      [&action, wanted] { action = [wanted](const Context& context) { Recorder(context, *wanted).run(); }; });
}

}  // namespace tembra::cli
