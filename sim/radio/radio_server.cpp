#include "sim/radio/radio_server.h"

#include <utility>

namespace tembra::sim {

RadioServer::RadioServer(const Endpoint& self, std::size_t datagramLength, Surroundings surroundings,
                         Answers::Manner manner, CodeByte codeByte)
    : Daemon(self, datagramLength, surroundings),
      answers_(surroundings, manner, codeByte,
               [this](Bytes datagram, std::string_view text, Sender sender) { tellLibrary(datagram, text, sender); }) {}

std::string_view RadioServer::mode() const {
  constexpr std::string_view names[] = {"idle", "adding", "removing"};
  return names[static_cast<int>(mode_)];
}

void RadioServer::become(Mode mode, Happening why) {
  answers_.drop();
  mode_ = mode;
  surroundings().happenings.happened(why);
}

void RadioServer::play(std::vector<Answer> answers) {
  answers_.play(std::move(answers), [this] { mode_ = Mode::kIdle; });
}

Outcome RadioServer::readyForButton() const {
  const std::string name(self().name);
  if (mode_ == Mode::kIdle) return {false, "nobody listens: the " + name + " is neither adding nor removing"};
  if (answers_.playing()) return {false, "the " + name + " is busy with another device"};
  return {true, ""};
}

Outcome RadioServer::press(std::string_view device) {
  said(device, self().name, "button pressed");
  Outcome ready = readyForButton();
  if (!ready.done) return ready;
  return mode_ == Mode::kAdding ? add(device) : remove(device);
}

Outcome RadioServer::pressFailing() {
  said("a device", self().name, "button pressed, but the radio fails");
  Outcome ready = readyForButton();
  if (!ready.done) return ready;
  const bool adding = mode_ == Mode::kAdding;
  play({failure(adding)});
  return {true, adding ? "adding fails" : "removing fails"};
}

}  // namespace tembra::sim
