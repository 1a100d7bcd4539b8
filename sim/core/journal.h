// What happened so far: the timeline for people, the datagrams counted, the mistakes found in the caller.
#ifndef TEMBRA_SIM_CORE_JOURNAL_H
#define TEMBRA_SIM_CORE_JOURNAL_H

#include <string_view>

namespace tembra::sim {

class Journal {
 public:
  /// `timeline`: everything said is printed.
  explicit Journal(bool timeline);

  void said(std::string_view from, std::string_view to, std::string_view what) const;
  void countReceived() { ++received_; }
  void countSent() { ++sent_; }

  /// The caller did what it must never do: loud on standard error, and the exit status tells it at the end.
  void found(std::string_view where, std::string_view mistake);
  /// The simulator itself could not do its work: as loud, and as decisive for the exit status.
  void trouble(std::string_view what);

  int received() const { return received_; }
  int sent() const { return sent_; }
  int mistakes() const { return mistakes_; }
  int troubles() const { return troubles_; }
  bool clean() const { return mistakes_ == 0 && troubles_ == 0; }

 private:
  bool timeline_;
  int received_ = 0;
  int sent_ = 0;
  int mistakes_ = 0;
  int troubles_ = 0;
};

}  // namespace tembra::sim

#endif
