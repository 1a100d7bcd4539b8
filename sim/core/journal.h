// What happened so far: the timeline for people, the datagrams counted, the mistakes found in the caller.
#ifndef TEMBRA_SIM_CORE_JOURNAL_H
#define TEMBRA_SIM_CORE_JOURNAL_H

#include <netinet/in.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <span>
#include <string_view>
#include <utility>

namespace tembra::recording {
class Recorder;
}

namespace tembra::sim {

class Journal {
 public:
  /// `timeline`: everything said is printed. `recording`: the file that datagrams and what is said go to, empty: none;
  /// throws one sentence when it cannot be written.
  Journal(bool timeline, const std::filesystem::path& recording);
  Journal(const Journal&) = delete;
  Journal& operator=(const Journal&) = delete;
  ~Journal();

  void said(std::string_view from, std::string_view to, std::string_view what) const;
  /// Hears of every datagram that a daemon receives, whatever its length.
  using Listener =
      std::function<void(const sockaddr_in& from, const sockaddr_in& to, std::span<const unsigned char> datagram)>;
  void listen(Listener listener) { listener_ = std::move(listener); }

  /// What was said since the datagram before belongs to this one.
  void received(const sockaddr_in& from, const sockaddr_in& to, std::span<const unsigned char> datagram);
  void sent(const sockaddr_in& from, const sockaddr_in& to, std::span<const unsigned char> datagram);

  /// The caller did what it must never do: loud on standard error, and the exit status tells it at the end.
  void found(std::string_view where, std::string_view mistake);
  /// The simulator itself could not do its work: as loud, and as decisive for the exit status.
  void trouble(std::string_view what);
  /// What the recording has to hold for a replay, at once.
  void recordFact(std::string_view text);
  /// What was said last is recorded, too. Nothing is recorded after this.
  void endRecording();

  int received() const { return received_; }
  int sent() const { return sent_; }
  int mistakes() const { return mistakes_; }
  int troubles() const { return troubles_; }
  bool clean() const { return mistakes_ == 0 && troubles_ == 0; }

 private:
  void record(const sockaddr_in& from, const sockaddr_in& to, std::span<const unsigned char> datagram);
  void stopAtTrouble();

  bool timeline_;
  std::unique_ptr<recording::Recorder> recorder_;
  Listener listener_;
  int received_ = 0;
  int sent_ = 0;
  int mistakes_ = 0;
  int troubles_ = 0;
};

}  // namespace tembra::sim

#endif
