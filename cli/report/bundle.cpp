#include "cli/report/bundle.h"

#include <tembra/records.h>

#include <stdexcept>

#include "cli/display/json_line.h"
#include "cli/doctor/checks/checks.h"
#include "cli/doctor/examination.h"
#include "cli/doctor/facts/flight_recorder.h"
#include "cli/failure.h"
#include "cli/report/datagram_secrets.h"
#include "cli/report/json_secrets.h"
#include "cli/report/recording_part.h"
#include "cli/report/sources.h"
#include "cli/report/stand_ins.h"
#include "cli/words/texts.h"

namespace tembra::cli::report {
namespace {

constexpr char kTitle[] = "A report of tembra-assoc about a router.";

std::string linesOf(const Objects& objects) {
  std::string text;
  for (const nlohmann::ordered_json& each : objects) text += jsonLine(each) + "\n";
  return text;
}

nlohmann::ordered_json asEvent(const doctor::Examined& one) {
  return nlohmann::ordered_json::parse(jsonEvent("check", doctor::examinedJson(one)));
}

Recorded readRecording(const Context& context, const std::string& path) {
  const std::string bytes = wholeFile(path);
  try {
    Recorded recorded = recordedIn(bytes);
    if (recorded.isCut) {
      context.display.complain(path + " was cut off: it ends in the middle of a packet. What stands before is put in.");
    }
    return recorded;
  } catch (const std::runtime_error& fault) {
    throw Failure(kFailed, path + ": " + fault.what() + "; no report was written.");
  }
}

// The name of a part is not the file's own, which may tell a name.
std::string numbered(const std::string& name, std::size_t number, const std::string& suffix) {
  return name + (number == 0 ? "" : "-" + std::to_string(number + 1)) + suffix;
}

// A recording tells its first database in hexadecimal digits. A line of it that cannot be read is dropped.
void replaceIn(recording::Comment& comment, const StandIns& standIns) {
  if (!comment.text.starts_with("database ")) {
    comment.text = standIns.replaced(comment.text);
    return;
  }
  auto record = recording::recordIn(comment.text);
  comment.text = record && replaceIn(*record, standIns) ? recording::lineOf(*record) : "";
}

/// The database with which a recording began.
doctor::Snapshot firstDatabase(const Recorded& recorded) {
  doctor::Snapshot database;
  for (const RecordedMoment& moment : recorded.moments) {
    for (const recording::Comment& comment : moment.comments) {
      if (const auto record = recording::recordIn(comment.text)) database.take(*record);
    }
  }
  return database;
}

void replaceIn(RecordedMoment& moment, const StandIns& standIns) {
  for (recording::Comment& comment : moment.comments) replaceIn(comment, standIns);
  if (moment.datagram) replaceIn(*moment.datagram, standIns);
}

/// Everything as it was found, and then with stand-ins.
class Bundle {
 public:
  Bundle(const Context& context, const Wanted& wanted) : router_(context, ""), withNames_(wanted.withNames) {
    for (const doctor::Examined& one : doctor::examine(router_, {})) findings_.push_back(asEvent(one));
    devices_ = deviceList(router_.database());
    for (const auto& entry : router_.history()) history_.push_back(nlohmann::ordered_json::parse(entry.dump()));
    for (const std::string& path : wanted.logs) logs_.push_back(endOfLog(path));
    if (!wanted.recording.empty()) recording_ = readRecording(context, wanted.recording);
    versions_ = versionsText();
    configuration_ = configurationText(context);
  }

  std::vector<Part> parts() {
    if (!withNames_) {
      learn();
      replaceAll();
    }
    std::vector<Part> parts = {{"doctor.jsonl", "what tembra-assoc doctor finds", linesOf(findings_)},
                               {"devices.jsonl", "the device list", linesOf(devices_)},
                               {"versions.txt", "versions of library, kit, programs and system", versions_},
                               {"configuration.txt", "settings of the front ends and of the kernel", configuration_}};
    if (!history_.empty())
      parts.push_back({"history.jsonl",
                       "the flight recorder of the front end that has the connection, else of the last failure",
                       linesOf(history_)});
    for (std::size_t i = 0; i < logs_.size(); ++i)
      parts.push_back({numbered("log", i, ".txt"), "the end of a log", logs_[i]});
    if (!recording_.moments.empty()) {
      const char* const meaning = recording_.isCut ? "datagrams of a recording that was cut off" : "datagrams";
      parts.push_back({"recording.pcapng", meaning, recordingOf(recording_.moments)});
    }
    return parts;
  }

 private:
  void learn() {
    standIns_.keepWordsOf(kTitle);
    for (const doctor::Check& check : doctor::allChecks()) standIns_.keepWordsOf(check.question);
    learnFromSystem(standIns_);
    for (const auto& device : deviceList(firstDatabase(recording_))) learnFrom(device, standIns_);
    for (const Objects* objects : {&devices_, &history_}) {
      for (const auto& each : *objects) learnFrom(each, standIns_);
    }
    for (const std::string& log : logs_) learnFromLog(log, standIns_);
    for (const RecordedMoment& moment : recording_.moments) {
      for (const recording::Comment& comment : moment.comments) learnFromLog(comment.text, standIns_);
      if (moment.datagram) learnFrom(*moment.datagram, standIns_);
    }
  }

  void replaceAll() {
    for (Objects* objects : {&findings_, &devices_, &history_}) {
      for (auto& each : *objects) each = replaced(each, standIns_);
    }
    for (std::string* text : {&versions_, &configuration_}) *text = standIns_.replaced(*text);
    for (std::string& log : logs_) log = standIns_.replaced(log);
    for (RecordedMoment& moment : recording_.moments) replaceIn(moment, standIns_);
  }

  doctor::Router router_;
  const bool withNames_;
  Objects findings_;
  Objects devices_;
  Objects history_;
  std::vector<std::string> logs_;
  Recorded recording_;
  std::string versions_;
  std::string configuration_;
  StandIns standIns_;
};

Part readme(const std::vector<Part>& parts, bool withNames) {
  std::string text = std::string(kTitle) + "\n\n";
  for (const Part& part : parts) text += part.name + ": " + part.meaning + ".\n";
  text += withNames
              ? "\nNames, places, users, codes and MAC addresses stand in it as they are.\n"
              : "\nNames, places, users, codes and MAC addresses were replaced: name1 is the same name in all parts.\n"
                "Look at the parts before you send them: a log may tell what no program knows for a name.\n";
  return {"README.txt", "what the parts are", text};
}

}  // namespace

std::vector<Part> makeBundle(const Context& context, const Wanted& wanted) {
  std::vector<Part> parts = Bundle(context, wanted).parts();
  parts.insert(parts.begin(), readme(parts, wanted.withNames));
  return parts;
}

}  // namespace tembra::cli::report
