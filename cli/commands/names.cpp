// tembra-assoc names: the texts of Z-Wave and ZigBee numbers, and the numbers of texts.
#include <tembra/names.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cctype>
#include <iomanip>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <sstream>

#include "cli/commands/commands.h"
#include "cli/display/json_line.h"
#include "cli/display/terminal.h"
#include "cli/failure.h"
#include "cli/words/device_types.h"
#include "cli/words/numbers.h"
#include "words/class_names.h"

namespace tembra::cli {
namespace {

struct Vocabulary {
  int first;
  int last;
  std::string (*name)(int value);
};

template <typename Value, const char* (*Name)(Value)>
std::string nameOf(int value) {
  return Name(static_cast<Value>(value));
}

constexpr int kLargestCommandClass = 255;

constexpr int kLargestDeviceType = 255;

constexpr int kLargestCluster = 0xFFFF;
constexpr char kNoCluster[] = "unknown";

std::string clusterText(int number) {
  const char* name = words::clusterName(number);
  return name == nullptr ? kNoCluster : name;
}

const std::map<std::string, Vocabulary> kVocabularies = {
    {"device-types", {1, kLargestDeviceType, typeName}},
    {"cluster", {0, kLargestCluster, clusterText}},
    {"cclass", {0, kLargestCommandClass, nameOf<unsigned char, cclassStr>}},
    {"operation", {0, ozw_Code_UpdateValueOperation, nameOf<ozw_OperationCode, OperationCodeenumToString>}},
    {"command", {0, ozw_ControllerCommand_DeleteButton, nameOf<ozw_ControllerCommand, ControllerCommandenumToString>}},
    {"notification", {0, ozw_Type_Notification, nameOf<ozw_NotificationType, NotificationenumToString>}},
    {"state", {0, ozw_State_NodeFailed, nameOf<ozw_ControllerState, controllerStateStr>}},
    {"error", {0, ozw_Error_Overflow, nameOf<ozw_ControllerError, controllerErrorStr>}},
    {"genre", {0, ozw_Genre_Count, nameOf<ozw_ValueGenre, enumValueGenreStr>}},
    {"type", {0, ozw_ValueType_Raw, nameOf<ozw_ValueType, valueTypeStr>}},
};

std::string numberText(const std::string& kind, int value) {
  const int digits = kind == "cclass" ? 2 : kind == "cluster" ? 4 : 0;
  if (digits == 0) return std::to_string(value);
  std::ostringstream text;
  text << "0x" << std::hex << std::uppercase << std::setw(digits) << std::setfill('0') << value;
  return text.str();
}

void print(const Context& context, const std::string& kind, int value) {
  const std::string name = kVocabularies.at(kind).name(value);
  if (context.options.json) {
    printLine(jsonLine({{"value", value}, {"name", name}}));
  } else {
    printText(numberText(kind, value) + "  " + name);
  }
}

// A number without a name of its own is none of the table.
bool isNamed(const std::string& kind, int value) {
  if (kind == "cclass") return kVocabularies.at(kind).name(value) != "NO OPERATION";
  if (kind == "cluster") return words::clusterName(value) != nullptr;
  return kind != "device-types" || isType(value);
}

void printAll(const Context& context, const std::string& kind) {
  const Vocabulary& vocabulary = kVocabularies.at(kind);
  for (int value = vocabulary.first; value <= vocabulary.last; ++value) {
    if (isNamed(kind, value)) print(context, kind, value);
  }
}

// Capitals do not count. A controller state begins with what joins it to the prefix of a log line, and may end in a
// blank.
std::string bare(const std::string& name) {
  constexpr char kJoining[] = ": ";
  const auto begin = name.find_first_not_of(kJoining);
  if (begin == std::string::npos) return "";
  std::string text = name.substr(begin, name.find_last_not_of(kJoining) + 1 - begin);
  std::ranges::transform(text, text.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text;
}

std::optional<int> searchTable(const Vocabulary& vocabulary, const std::string& name) {
  for (int value = vocabulary.first; value <= vocabulary.last; ++value) {
    if (bare(vocabulary.name(value)) == bare(name)) return value;
  }
  return std::nullopt;
}

std::optional<int> findName(const Context& context, const std::string& kind, const std::string& name) {
  if (kind == "cluster") return words::clusterNumber(name);
  if (kind != "cclass") return searchTable(kVocabularies.at(kind), name);
  const unsigned number = cclassNum(name.c_str());
  if (number != kLargestCommandClass) return static_cast<int>(number);
  std::optional<int> found = searchTable(kVocabularies.at(kind), name);
  if (!found) found = words::commandClassNumber(name);
  if (found) context.display.complain("cclassNum() does not know \"" + name + "\": it answers 255.");
  return found;
}

void translate(const Context& context, const std::string& kind, const std::string& text) {
  if (text.empty()) return printAll(context, kind);
  std::optional<int> value = parseNumber(text);
  if (value && kind == "cclass" && (*value < 0 || *value > kLargestCommandClass)) {
    throw Failure(kUsage, "a command class is a number from 0 to 255.");
  }
  if (value && kind == "cluster" && (*value < 0 || *value > kLargestCluster)) {
    throw Failure(kUsage, "a cluster is a number from 0 to 0xFFFF.");
  }
  if (!value) value = findName(context, kind, text);
  if (!value) throw Failure(kFailed, "\"" + text + "\" names no " + kind + ".");
  print(context, kind, *value);
}

}  // namespace

void declareNames(CLI::App& program, Action& action) {
  CLI::App* command = program.add_subcommand("names", "the texts of numbers, and the numbers of texts");
  auto kind = std::make_shared<std::string>();
  auto text = std::make_shared<std::string>();
  command->add_option("kind", *kind, "what the number is")->check(CLI::IsMember(&kVocabularies))->required();
  command->add_option("value", *text, "a number or a name; without it the whole table");
  command->callback(
      [&action, kind, text] { action = [kind, text](const Context& context) { translate(context, *kind, *text); }; });
}

}  // namespace tembra::cli
