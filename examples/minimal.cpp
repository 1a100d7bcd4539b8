// Adds the next device whose button is pressed, with the type and the name that the library proposes.
#include <tembra/frontend.hpp>

#include <cstdio>

int main() {
  tembra::Frontend kit;
  if (kit.add() != tembra::Result::ok) return 1;
  while (const auto event = kit.next()) {
    if (event->as<tembra::Waiting>() != nullptr) std::puts("Press the button of the device.");
    if (const auto* found = event->as<tembra::Found>()) {
      // Here a user chooses: found->choices has the types, found->name and found->place are the proposals.
      if (kit.finish(found->type, found->name) != tembra::Result::ok) kit.cancel();
    }
    if (const auto* device = event->as<tembra::Added>()) std::printf("Added %s.\n", device->name.c_str());
    if (const auto* ended = event->as<tembra::Ended>()) {
      std::puts((ended->text + (ended->advice.empty() ? "" : " " + ended->advice)).c_str());
      return ended->outcome == TEMBRA_DONE ? 0 : 1;
    }
  }
  return 1;
}
