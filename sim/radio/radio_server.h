// What the servers of both radios have in common: a mode that commands change, and devices whose buttons are pressed.
#ifndef TEMBRA_SIM_RADIO_RADIO_SERVER_H
#define TEMBRA_SIM_RADIO_RADIO_SERVER_H

#include <string>
#include <string_view>
#include <vector>

#include "sim/answers/answers.h"
#include "sim/core/daemon.h"
#include "sim/core/outcome.h"

namespace tembra::sim {

class RadioServer : public Daemon {
 public:
  virtual bool hasDevice(std::string_view name) const = 0;
  /// Somebody presses the button of a device that the server has.
  Outcome press(std::string_view device);
  /// Somebody presses a button and the radio fails.
  Outcome pressFailing();
  /// "idle", "adding" or "removing".
  std::string_view mode() const;

 protected:
  enum class Mode { kIdle, kAdding, kRemoving };

  RadioServer(const Endpoint& self, std::size_t datagramLength, Surroundings surroundings, Answers::Manner manner,
              CodeByte codeByte);

  virtual Outcome add(std::string_view device) = 0;
  virtual Outcome remove(std::string_view device) = 0;
  virtual Answer failure(bool adding) const = 0;

  bool isBusy() const { return mode_ != Mode::kIdle; }
  /// Begins or ends an operation; what is still to be said of the former one is forgotten.
  void become(Mode mode, Happening why);
  /// Answers, and is idle after the last answer.
  void play(std::vector<Answer> answers);

 private:
  Outcome readyForButton() const;

  Answers answers_;
  Mode mode_ = Mode::kIdle;
};

}  // namespace tembra::sim

#endif
