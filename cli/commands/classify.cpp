// tembra-assoc classify: what the library would make of a device, and why; without any server.
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <nlohmann/json.hpp>
#include <sstream>

#include "cli/classification/classification.h"
#include "cli/classification/device_description.h"
#include "cli/classification/private_database.h"
#include "cli/commands/commands.h"
#include "cli/display/json_line.h"
#include "cli/display/terminal.h"
#include "cli/failure.h"
#include "cli/words/device_types.h"
#include "platform/printable.h"

namespace tembra::cli {
namespace {

constexpr std::size_t kLongestText = 1'000'000;  // a description needs some thousand bytes at most

[[noreturn]] void refuseFile(const std::string& path, const std::string& why) {
  throw Failure(kFailed, "cannot read " + path + ": " + why + ".");
}

std::string readInput(const Context& context) {
  if (isatty(STDIN_FILENO) == 1) context.display.complain("type the description of the device, then Ctrl-D.");
  std::string text;
  while (const auto line = context.attention.readLine()) {
    text.append(*line).append(1, '\n');
    if (text.size() > kLongestText) refuseFile("standard input", "too long for the description of a device");
  }
  return text;
}

std::string readFile(const std::string& path) {
  std::error_code none;
  if (std::filesystem::is_directory(path, none)) refuseFile(path, "it is a folder");
  std::ifstream file(path, std::ios::binary);
  if (!file) refuseFile(path, std::strerror(errno));
  std::string text(kLongestText + 1, '\0');
  file.read(text.data(), static_cast<std::streamsize>(text.size()));
  if (file.bad()) refuseFile(path, std::strerror(errno));
  text.resize(static_cast<std::size_t>(file.gcount()));
  if (text.size() > kLongestText) refuseFile(path, "too long for the description of a device");
  return text;
}

nlohmann::ordered_json classifiedTypeJson(DevType type) { return {{"number", type}, {"name", typeName(type)}}; }

std::string placeOf(const Classification& result) { return result.radio == "ZigBee" ? "endpoint" : "instance"; }

nlohmann::ordered_json toJson(const Classification& result) {
  nlohmann::ordered_json json = {{"radio", result.radio}, {"classified", result.classified}};
  if (result.classified) {
    json["type"] = classifiedTypeJson(result.type);
    json["name"] = result.name;
    json["indexes"] = nlohmann::ordered_json::array();
    for (const IndexSlot& slot : result.slots) {
      json["indexes"].push_back({{"number", slot.number}, {"type", slot.type}, {placeOf(result), slot.place}});
    }
    json["choices"] = nlohmann::ordered_json::array();
    for (const DevType type : result.subTypes) json["choices"].push_back(classifiedTypeJson(type));
  }
  json["why"] = result.reasons;
  return json;
}

std::string otherTypesText(const Classification& result) {
  std::string text;
  for (const DevType type : result.subTypes) {
    if (type != result.type) text += (text.empty() ? "" : ", ") + typeName(type);
  }
  return text.empty() ? "none" : text;
}

std::string slotsText(const Classification& result) {
  std::string text;
  for (const IndexSlot& slot : result.slots) {
    text += "\n  " + std::to_string(slot.number) + ": index type " + std::to_string(slot.type) + ", " +
            placeOf(result) + " " + std::to_string(slot.place);
  }
  return text.empty() ? " none" : text;
}

std::string toText(const Classification& result) {
  std::ostringstream text;
  text << result.radio << " device\n";
  if (result.classified) {
    text << "Type: " << typeName(result.type) << " (" << result.type << ")\nName: " << printable(result.name)
         << "\nIndex table:" << slotsText(result) << "\nMay be chosen instead: " << otherTypesText(result) << "\n";
  } else {
    text << "Not classified: the add would fail.\n";
  }
  text << "Why:";
  for (const std::string& reason : result.reasons) text << "\n  " << printable(reason);
  return text.str();
}

void classifyFile(const Context& context, const std::string& path) {
  const DeviceDescription description = readDescription(path == "-" ? readInput(context) : readFile(path));
  TembraAssociation& service = *TembraAssociation::getInstance();
  const PrivateDatabase database;
  Classification result =
      std::visit([&service](const auto& record) { return classify(service, record); }, description.record);
  result.reasons.insert(result.reasons.begin(), description.remarks.begin(), description.remarks.end());
  context.options.json ? printLine(jsonLine(toJson(result))) : printText(toText(result));
}

}  // namespace

void declareClassify(CLI::App& program, Action& action) {
  CLI::App* command = program.add_subcommand("classify", "what the library makes of a described device, and why");
  auto path = std::make_shared<std::string>();
  command->add_option("file", *path, "JSON description of the device, - for standard input")->required();
  command->callback([&action, path] { action = [path](const Context& context) { classifyFile(context, *path); }; });
}

}  // namespace tembra::cli
