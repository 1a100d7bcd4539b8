// Plays a script: the front end, the daemons, the HA server's database, the clock and the faults of one session.
#ifndef TEMBRA_FUZZ_SESSION_PLAYER_H
#define TEMBRA_FUZZ_SESSION_PLAYER_H

#include <string>

#include "session/calls.h"
#include "support/object_check.h"
#include "support/script.h"
#include "support/stage.h"

namespace fuzz {

/// The library's receive thread runs inside the call that opens the connection; there the script goes on, until it
/// closes the connection or ends.
class Player : public Router {
 public:
  explicit Player(Script& script);
  ~Player() override;

  void play();

  ssize_t receive(int descriptor, unsigned char* buffer, sockaddr_in& sender) override;
  void sent(const Send& send) override;
  void heard(const AssocEvent& event) override;
  void logged() override;
  bool strikes(Fault fault) override;
  [[nodiscard]] const char* settings() const override { return settings_.c_str(); }

 private:
  // What a step means for a receive that is under way.
  enum class Outcome { kGoOn, kDatagram, kFailure };

  struct Receive {
    unsigned char* buffer;
    sockaddr_in* sender;
    ssize_t length = 0;
    int error = 0;
  };

  Outcome step(Receive& receive);
  Outcome sendDatagram(Receive& receive);
  Outcome failReceive(Receive& receive);
  void armFault();
  void writeFields();
  void changeDatabase();
  void putDevice();
  void putRecord();
  void check() const { check_.check(stage_.boundSocket()); }

  Script& script_;
  Stage stage_;
  ObjectCheck check_;
  FrontEnd frontEnd_;
  std::string settings_ = "3\n";
  unsigned faults_ = 0;
  int faultError_ = 0;
  bool callInCallback_ = false;
  bool callInLogger_ = false;
  bool inLogger_ = false;
  int receives_ = 0;
  int callbacks_ = 0;
};

}  // namespace fuzz

#endif
