// tembra-daemon-check: plays the library's side against a daemon, and says what breaks the contract.
#include <tembra/version.h>

#include <CLI/CLI.hpp>
#include <exception>
#include <iostream>
#include <map>
#include <string>

#include "daemon_check/examination.h"
#include "platform/printable.h"

namespace {

using namespace tembra::daemon_check;

constexpr int kUsage = 2;
constexpr int kNoPlace = 3;

constexpr const char* kFooter =
    "Exit status: 0 no fault was found, 1 faults were found, 2 wrong usage, 3 it could not be checked: another "
    "program\n"
    "has the library's address, or the command of --press failed.\n"
    "\n"
    "What is checked changes things: a radio gets a device and loses it again, a bridge and a bulb are added, a Nest\n"
    "account is linked with a code that is none, and unlinked.";

const std::map<std::string, Subject (*)(bool)> kSubjects{{"zwave", zwaveSubject},
                                                         {"zigbee", zigbeeSubject},
                                                         {"hue", [](bool) { return hueSubject(); }},
                                                         {"nest", [](bool) { return nestSubject(); }}};

struct Arguments {
  std::string server;
  Manner manner;
  bool reset = false;
};

void addOptions(CLI::App& app, Arguments& arguments) {
  app.footer(kFooter);
  app.add_option("SERVER", arguments.server, "zwave, zigbee, hue or nest")->required()->check(CLI::IsMember(kSubjects));
  app.add_option("--press", arguments.manner.press, "shell command that presses the device's button; else you do it");
  app.add_option("--speed", arguments.manner.speed, "the limits are so many times shorter")
      ->check(CLI::Range(0.01, 10000.0))
      ->capture_default_str();
  app.add_flag("--reset", arguments.reset, "also reset the radio's network, at the end: it forgets every device");
}

}  // namespace

int main(int argc, char** argv) try {
  Arguments arguments;
  CLI::App app("Plays the library's side against a daemon, and says what breaks the contract", "tembra-daemon-check");
  app.set_version_flag("--version", "tembra-daemon-check " TEMBRA_VERSION_TEXT);
  addOptions(app, arguments);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) return app.exit(error);
    std::cerr << "tembra-daemon-check: " << tembra::printable(error.what()) << " (--help tells what is possible)\n";
    return kUsage;
  }
  const Subject subject = kSubjects.at(arguments.server)(arguments.reset);
  const int faults = Examination(subject, arguments.manner).run();
  std::cout << (faults == 0 ? "No fault was found." : "Faults found: " + std::to_string(faults)) << std::endl;
  return faults == 0 ? 0 : 1;
} catch (const std::exception& failure) {
  std::cerr << "tembra-daemon-check: " << failure.what() << '\n';
  return kNoPlace;
}
