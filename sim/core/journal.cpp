#include "sim/core/journal.h"

#include <iostream>
#include <string>

#include "platform/printable.h"
#include "recording/recorder.h"
#include "words/timeline.h"

namespace tembra::sim {

Journal::Journal(bool timeline, const std::filesystem::path& recording)
    : timeline_(timeline), recorder_(recording.empty() ? nullptr : std::make_unique<recording::Recorder>(recording)) {}

Journal::~Journal() = default;

void Journal::said(std::string_view from, std::string_view to, std::string_view what) const {
  if (timeline_) words::say(from, to, what);
  if (recorder_) recorder_->remark(std::string(from).append(" -> ").append(to).append("   ").append(printable(what)));
}

void Journal::received(const sockaddr_in& from, const sockaddr_in& to, std::span<const unsigned char> datagram) {
  ++received_;
  if (listener_) listener_(from, to, datagram);
  record(from, to, datagram);
}

void Journal::sent(const sockaddr_in& from, const sockaddr_in& to, std::span<const unsigned char> datagram) {
  ++sent_;
  record(from, to, datagram);
}

void Journal::record(const sockaddr_in& from, const sockaddr_in& to, std::span<const unsigned char> datagram) {
  if (!recorder_) return;
  recorder_->datagram(from, to, datagram);
  stopAtTrouble();
}

void Journal::recordFact(std::string_view text) {
  if (!recorder_) return;
  recorder_->fact(text);
  stopAtTrouble();
}

void Journal::endRecording() {
  if (!recorder_) return;
  recorder_->end();
  stopAtTrouble();
  recorder_.reset();
}

// A full disk is told once: the recorder goes.
void Journal::stopAtTrouble() {
  const std::string what = recorder_->trouble();
  if (what.empty()) return;
  recorder_.reset();
  trouble(what);
}

void Journal::found(std::string_view where, std::string_view mistake) {
  ++mistakes_;
  const std::string text = "FAULT FOUND by the " + std::string(where) + ": " + printable(mistake);
  std::cerr << "tembra-sim: " << text << std::endl;
  if (recorder_) recorder_->remark(text);
}

void Journal::trouble(std::string_view what) {
  ++troubles_;
  std::cerr << "tembra-sim: " << printable(what) << std::endl;
}

}  // namespace tembra::sim
