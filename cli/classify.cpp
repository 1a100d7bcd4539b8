// tembra-assoc classify: what the library would make of a device, and why; without any server.
#include <CLI/CLI.hpp>
#include <fstream>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <sstream>

#include "classification.h"
#include "commands.h"
#include "connection.h"
#include "device_description.h"
#include "device_types.h"
#include "event_report.h"
#include "failure.h"
#include "private_database.h"
#include "texts.h"

namespace tembra::cli {
namespace {

std::string textOf(std::istream& stream) {
  std::ostringstream text;
  text << stream.rdbuf();
  return text.str();
}

std::string readAll(const std::string& path) {
  if (path == "-") return textOf(std::cin);
  std::ifstream file(path);
  if (!file) throw Failure(kFailed, "cannot read " + path + ".");
  return textOf(file);
}

nlohmann::ordered_json typeJson(DevType type) { return {{"number", type}, {"name", typeName(type)}}; }

nlohmann::ordered_json toJson(const Classification& result) {
  nlohmann::ordered_json json = {{"radio", result.radio}, {"classified", result.classified}};
  if (result.classified) {
    json["type"] = typeJson(result.type);
    json["name"] = result.name;
    json["indexes"] = nlohmann::ordered_json::array();
    for (const IndexSlot& slot : result.slots) {
      json["indexes"].push_back({{"number", slot.number}, {"type", slot.type}, {"place", slot.place}});
    }
    json["choices"] = nlohmann::ordered_json::array();
    for (const DevType type : result.subTypes) json["choices"].push_back(typeJson(type));
  }
  json["why"] = result.reasons;
  return json;
}

std::string typesText(const std::vector<DevType>& types) {
  std::string text;
  for (const DevType type : types) text += (text.empty() ? "" : ", ") + typeName(type);
  return text.empty() ? "none" : text;
}

std::string slotsText(const Classification& result) {
  const char* place = result.radio == "ZigBee" ? "endpoint " : "instance ";
  std::string text;
  for (const IndexSlot& slot : result.slots) {
    text += "\n  " + std::to_string(slot.number) + ": index type " + std::to_string(slot.type) + ", " + place +
            std::to_string(slot.place);
  }
  return text.empty() ? " none" : text;
}

std::string toText(const Classification& result) {
  std::ostringstream text;
  text << result.radio << " device\n";
  if (result.classified) {
    text << "Type: " << typeName(result.type) << " (" << result.type << ")\nName: " << printable(result.name)
         << "\nIndex table:" << slotsText(result) << "\nMay be chosen instead: " << typesText(result.subTypes) << "\n";
  } else {
    text << "Not classified: the add would fail.\n";
  }
  text << "Why:\n";
  for (const std::string& reason : result.reasons) text << "  " << printable(reason) << "\n";
  return text.str();
}

void classifyFile(const Context& context, const std::string& path) {
  const DeviceDescription description = readDescription(readAll(path));
  for (const std::string& remark : description.remarks) complain(remark + ".");
  TembraAssociation& service = serviceAs(context.options.role);
  const PrivateDatabase database;
  const Classification result =
      std::visit([&service](const auto& record) { return classify(service, record); }, description.record);
  std::cout << (context.options.json ? jsonLine(toJson(result)) + "\n" : toText(result)) << std::flush;
}

}  // namespace

void declareClassify(CLI::App& program, Action& action) {
  CLI::App* command = program.add_subcommand("classify", "what the library makes of a described device, and why");
  auto path = std::make_shared<std::string>();
  command->add_option("file", *path, "JSON description of the device, - for standard input")->required();
  command->callback([&action, path] { action = [path](const Context& context) { classifyFile(context, *path); }; });
}

}  // namespace tembra::cli
