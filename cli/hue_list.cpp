#include "hue_list.h"

#include <tembra/globals.h>

#include <CLI/CLI.hpp>
#include <cstdlib>
#include <iomanip>
#include <iostream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "connection.h"
#include "database_file.h"
#include "display.h"
#include "failure.h"
#include "library_call.h"
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

// Users stand in the text as the database has them, so it need not be JSON.
void printTable(const std::string& list) {
  const auto json = nlohmann::json::parse(list, nullptr, false);
  if (json.is_discarded()) throw Failure(kFailed, "the library's list of bridges is no JSON: " + printable(list));
  printTableLine("Bridge", "User");
  for (const auto& bridge : json.at("MAClist")) {
    printTableLine(printable(bridge.at("mac")), printable(bridge.at("username")));
  }
}

void listHueBridges(const Context& context) {
  checkBeforeLibraryOpens(DBName);
  const std::string list = bridgeList(context);
  if (context.options.json) return printLine(list);
  printTable(list);
}

}  // namespace

void declareHueList(CLI::App& hue, Action& action) {
  CLI::App* command = hue.add_subcommand("list", "list the Hue bridges of the device database and their users");
  command->callback([&action] { action = listHueBridges; });
}

}  // namespace tembra::cli
