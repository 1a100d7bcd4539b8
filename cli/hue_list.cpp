#include "hue_list.h"

#include <tembra/globals.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdlib>
#include <iomanip>
#include <iostream>
#include <nlohmann/json.hpp>
#include <span>
#include <sstream>

#include "bridge_list.h"
#include "connection.h"
#include "database_file.h"
#include "display.h"
#include "event_report.h"
#include "failure.h"
#include "library_call.h"
#include "platform/printable.h"
#include "texts.h"

namespace tembra::cli {
namespace {

constexpr std::chrono::milliseconds kListTick{100};
constexpr int kMacColumn = 17;

// The library waits for the lock of the database without end; the user need not.
std::string bridgeList(const Context& context) {
  TembraAssociation& service = serviceAs(context.options.role);
  const auto list = std::make_shared<std::optional<std::string>>();
  const auto read = [&service, list] {
    const std::unique_ptr<char, decltype(&std::free)> text(service.Hue_getBridgeList(), &std::free);
    if (text) *list = text.get();
  };
  runLibraryCall(read, [&context] { context.attention.pause(kListTick); });
  if (!*list) throw Failure(kFailed, "the library cannot read the bridges from the device database.");
  return **list;
}

void printTableLine(const std::string& mac, const std::string& user) {
  std::ostringstream line;
  line << std::left << std::setw(kMacColumn) << mac << "  " << user;
  printLine(line.str());
}

// A user that reads like the end of one bridge and the beginning of the next makes one bridge look like two; the table
// of users, from which the library wrote the list, does not agree then.
void checkUsers(const std::vector<ListedBridge>& bridges, const std::string& list) {
  const bool good =
      std::ranges::equal(bridges, std::span(username1).first(std::min(bridges.size(), std::size(username1))), {},
                         &ListedBridge::user, [](const auto& user) { return fieldText(user); });
  if (!good) throw Failure(kFailed, "a user in the device database breaks the library's list of bridges: " + list);
}

void printTable(const std::vector<ListedBridge>& bridges) {
  printTableLine("Bridge", "User");
  for (const ListedBridge& bridge : bridges) printTableLine(printable(bridge.mac), printable(bridge.user));
}

void printJson(const std::vector<ListedBridge>& bridges) {
  auto all = nlohmann::ordered_json::array();
  for (const ListedBridge& bridge : bridges) all.push_back({{"mac", bridge.mac}, {"username", bridge.user}});
  printLine(jsonLine({{"MAClist", all}}));
}

void listHueBridges(const Context& context) {
  checkBeforeLibraryOpens(DBName);
  const std::string list = bridgeList(context);
  const std::vector<ListedBridge> bridges = readBridgeList(list);
  checkUsers(bridges, list);
  context.options.json ? printJson(bridges) : printTable(bridges);
}

}  // namespace

void declareHueList(CLI::App& hue, Action& action) {
  CLI::App* command = hue.add_subcommand("list", "list the Hue bridges of the device database and their users");
  command->callback([&action] { action = listHueBridges; });
}

}  // namespace tembra::cli
