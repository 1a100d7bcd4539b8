// tembra-sim: the simulated router, and the buttons of the devices around it.
#include <tembra/version.h>

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <array>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <iostream>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

#include "platform/printable.h"
#include "sim/control/control_client.h"
#include "sim/control/control_path.h"
#include "sim/fitted_stream.h"
#include "sim/replay/replay.h"
#include "sim/replay/to_scenario.h"
#include "sim/router.h"
#include "words/unknown_word.h"

namespace {

using namespace tembra::sim;

constexpr int kRefused = 1;
constexpr int kUsage = 2;

// The installed data lies beside the program; a build folder has a link to its sources, or is their folder.
std::filesystem::path defaultCatalogue() {
  std::error_code failure;
  const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", failure);
  const std::filesystem::path tree = program.parent_path().parent_path();
  std::filesystem::path installed = tree / TEMBRA_SIM_DATA_DIR / "catalogue";
  for (const std::filesystem::path& folder : {installed, tree / "source/sim/catalogue", tree / "sim/catalogue"}) {
    if (std::filesystem::is_directory(folder, failure)) return folder;
  }
  return installed;
}

struct Arguments {
  RouterOptions router;
  std::vector<std::string> faults;
  std::string device;
  std::string failing;  ///< the radio that fails, empty: none
  std::vector<std::string> answer;
  std::string request;
  std::string word;  ///< of the request
  ReplayOptions replay;
  std::string newDatabase;  ///< made of a recording's; empty: none
};

int printDevices(const Arguments& arguments) {
  const Home home = Home::load(arguments.router.catalogue, arguments.router.ownDevices);
  std::array<char, 96> facts{};
  for (const ZwaveDevice& device : home.zwave.devices()) {
    std::snprintf(facts.data(), facts.size(), "%-22s 0x%.2x/0x%.2x/0x%.2x  %2zu classes, %2zu values  ",
                  device.label.c_str(), device.basicClass, device.genericClass, device.specificClass,
                  device.commandClasses.size(), device.values.size());
    std::cout << facts.data() << tembra::printable(device.description) << '\n';
  }
  for (const ZigbeeDevice& device : home.zigbee.devices()) {
    std::snprintf(facts.data(), facts.size(), "%-22s ZigBee zone 0x%.4x  %2zu clusters  ", device.label.c_str(),
                  device.zoneType, device.clusters.size());
    std::cout << facts.data() << tembra::printable(device.description) << '\n';
  }
  std::snprintf(facts.data(), facts.size(), "%-22s link button of the Hue bridges\n", std::string(kHueButton).c_str());
  std::cout << facts.data();
  return 0;
}

// Whoever listens at the control socket wrote them.
void printLines(const std::string& text) {
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) std::cout << tembra::printable(line) << '\n';
}

int askRunning(const Arguments& arguments, const std::string& request) {
  const Outcome outcome = ask(arguments.router.control, request);
  if (outcome.done) {
    printLines(outcome.text);
    return 0;
  }
  std::cerr << "tembra-sim: " << tembra::printable(outcome.text) << '\n';
  return kRefused;
}

int press(const Arguments& arguments) {
  return askRunning(arguments, arguments.failing.empty() ? "press " + arguments.device : "fail " + arguments.failing);
}

int answer(const Arguments& arguments) {
  std::string request = "answer";
  for (const std::string& word : arguments.answer) request += " " + word;
  return askRunning(arguments, request);
}

int run(const Arguments& arguments) { return Router(arguments.router).run(); }

// What both kinds of router have in common stands in the options of the first.
int replay(const Arguments& arguments) {
  const RouterOptions& common = arguments.router;
  ReplayOptions options = arguments.replay;
  options.database = common.database;
  options.authorisation = common.authorisation;
  options.speed = common.speed;
  options.catalogue = common.catalogue;
  options.ownDevices = common.ownDevices;
  options.without = common.without;
  options.control = common.control;
  options.recording = common.recording;
  options.timeline = common.timeline;
  return Replay(options).run();
}

// The database is the one with which the recording began.
int printScenario(const Arguments& arguments) {
  const Traffic traffic = loadTraffic(arguments.replay.file);
  const Home home = Home::load(arguments.router.catalogue, arguments.router.ownDevices);
  warnWithoutDatabase(traffic);
  std::cout << scenarioText(scenarioOf(traffic, home)) << std::flush;
  if (!arguments.newDatabase.empty()) makeDatabase(arguments.newDatabase, traffic);
  return std::cout.good() ? 0 : kRefused;
}

void addControl(CLI::App& command, Arguments& arguments) {
  command.add_option("--control", arguments.router.control, "socket of the running simulator")->capture_default_str();
}

void addCatalogue(CLI::App& command, Arguments& arguments) {
  command.add_option("--catalogue", arguments.router.ownDevices, "JSON file of devices that add to the catalogue")
      ->type_name("FILE")
      ->allow_extra_args(false);
}

void addRouterOptions(CLI::App& command, Arguments& arguments) {
  RouterOptions& options = arguments.router;
  command.add_option("--db", options.database, "device database")->capture_default_str();
  command.add_option("--authcode", options.authorisation, "authorisation code of the Nest account")
      ->capture_default_str();
  command.add_option("--speed", options.speed, "simulated seconds per second")
      ->check(CLI::Range(0.01, 1000.0))
      ->capture_default_str();
  command.add_option("--without", options.without, "leave servers out: zwave, zigbee, hue, nest")
      ->type_name("SERVER")
      ->check(CLI::IsMember(std::vector<std::string>(kKillableServers.begin(), kKillableServers.end())));
  command.add_option("--record", options.recording, "record the datagrams for Wireshark");
  command.add_flag("--timeline", options.timeline, "print who says what to whom");
  addCatalogue(command, arguments);
  addControl(command, arguments);
}

void addRunOptions(CLI::App& command, Arguments& arguments) {
  RouterOptions& options = arguments.router;
  command.add_option("--bridges", options.bridges, "number of Hue bridges")
      ->check(CLI::Range(0, HueBridges::kMost))
      ->capture_default_str();
  command.add_option("--latency", options.latencyMs, "milliseconds before an answer")
      ->check(CLI::Range(0, 3'600'000))
      ->capture_default_str();
  command.add_option("--fault", arguments.faults, "MESSAGE:KIND[=VALUE][:COUNT], see the README")
      ->allow_extra_args(false);
  command.add_option("--scenario", options.scenario, "JSON file of things that happen by themselves");
  addRouterOptions(command, arguments);
}

void addReplayOptions(CLI::App& command, Arguments& arguments) {
  command.add_option("FILE", arguments.replay.file, "recording: pcapng or pcap")->required();
  command.add_flag("--go-on,!--stop", arguments.replay.goesOn, "go on at a difference; --stop, the default: end there");
  addRouterOptions(command, arguments);
  command.get_option("--speed")->description("the servers answer so many times faster; the front end waits as always");
}

using Action = int (*)(const Arguments&);

// What is asked of the running simulator with one word.
struct Request {
  const char* name;
  const char* description;
  const char* word;
  const char* meaning;
};

constexpr Request kRequests[] = {
    {"fault", "set a fault, or \"none\" to clear all", "SPEC", "MESSAGE:KIND[=VALUE][:COUNT]"},
    {"bridges", "change the number of Hue bridges", "COUNT", "from now on"},
    {"kill", "kill a server", "SERVER", "zwave, zigbee, hue or nest"},
    {"start", "start a server that was killed", "SERVER", "zwave, zigbee, hue or nest"},
};

int askWithWord(const Arguments& arguments) { return askRunning(arguments, arguments.request + " " + arguments.word); }

void addRequest(CLI::App& app, Arguments& arguments, Action& chosen, const Request& request) {
  CLI::App* command = app.add_subcommand(request.name, request.description);
  command->add_option(request.word, arguments.word, request.meaning)->required();
  command->callback([&arguments, &chosen, &request] {
    arguments.request = request.name;
    chosen = askWithWord;
  });
  addControl(*command, arguments);
}

// Adds every command; the chosen one's action comes back through `chosen`.
void addCommands(CLI::App& app, Arguments& arguments, Action& chosen) {
  const auto add = [&app, &chosen](const char* name, const char* description, Action action) {
    CLI::App* command = app.add_subcommand(name, description);
    command->callback([&chosen, action] { chosen = action; });
    return command;
  };
  addRunOptions(*add("run", "run the simulated router until it is stopped", run), arguments);
  addReplayOptions(*add("replay", "answer as the servers of a recording did, and compare what is sent", replay),
                   arguments);
  CLI::App* scenario = add("scenario", "print the scenario that a recording tells", printScenario);
  scenario->add_option("FILE", arguments.replay.file, "recording: pcapng or pcap")->required();
  scenario->add_option("--make-db", arguments.newDatabase, "make the database with which the recording began")
      ->type_name("PATH");
  addCatalogue(*scenario, arguments);
  addCatalogue(*add("devices", "list the devices of the catalogue", printDevices), arguments);
  CLI::App* pressing = add("press", "press the button of a device", press);
  CLI::Option* device = pressing->add_option("DEVICE", arguments.device, "label, or label#2 for a second one");
  pressing->add_flag("--fail{zwave}", arguments.failing, "a radio fails instead, --fail=zigbee the other")
      ->excludes(device);
  pressing->callback([&arguments, &chosen] {
    if (arguments.device.empty() && arguments.failing.empty()) throw CLI::RequiredError("DEVICE or --fail");
    chosen = press;
  });
  addControl(*pressing, arguments);
  CLI::App* answering = add("answer", "let a server say something of its own accord", answer);
  answering->add_option("WORDS", arguments.answer, "zigbee STATUS [DEVICE], hue TYPE [COUNT], nest COMMAND [STATUS]")
      ->required();
  addControl(*answering, arguments);
  for (const Request& request : kRequests) addRequest(app, arguments, chosen, request);
  addControl(*add("status", "what the running simulator has seen",
                  [](const Arguments& given) { return askRunning(given, "status"); }),
             arguments);
  addControl(
      *add("stop", "stop the running simulator", [](const Arguments& given) { return askRunning(given, "stop"); }),
      arguments);
}

int parseAndAct(int argc, char** argv, std::optional<FittedStream>& output) {
  Arguments arguments;
  arguments.router.control = defaultControlPath();
  arguments.router.catalogue = defaultCatalogue();
  Action action = nullptr;
  CLI::App app("The simulated router of the association service", "tembra-sim");
  app.set_version_flag("--version", "tembra-sim " TEMBRA_VERSION_TEXT);
  app.require_subcommand(1);
  addCommands(app, arguments, action);
  try {
    app.parse(argc, argv);
    for (const std::string& fault : arguments.faults) arguments.router.faults.push_back(parseFault(fault));
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) return app.exit(error);
    const std::string unknown = tembra::words::unknownWord(app);
    std::cerr << "tembra-sim: " << tembra::printable(unknown.empty() ? error.what() : unknown)
              << " (--help tells what is possible)\n";
    return kUsage;
  } catch (const std::invalid_argument& mistake) {
    std::cerr << "tembra-sim: " << tembra::printable(mistake.what()) << '\n';
    return kUsage;
  }
  if (action == printScenario) output.reset();  // a text of JSON has ends of lines of its own
  return action(arguments);
}

}  // namespace

int main(int argc, char** argv) {
  const FittedStream errors(std::cerr, STDERR_FILENO);
  try {
    std::optional<FittedStream> output(std::in_place, std::cout, STDOUT_FILENO);
    return parseAndAct(argc, argv, output);
  } catch (const std::exception& failure) {
    std::cerr << "tembra-sim: " << tembra::printable(failure.what()) << '\n';
    return kRefused;
  }
}
