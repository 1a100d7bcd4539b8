// The tables of the Wireshark dissector: the same records, numbers and meanings as on the page on wire formats.
#include <tembra/names.h>
#include <tembra/platform.h>
#include <tembra/rules.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <regex>

#include "docs/datagrams.h"
#include "docs/header_reader.h"
#include "docs/pages.h"

namespace {

using docs::Enumerations;
using docs::Enumerator;
using docs::FieldText;
using docs::RecordText;

using Names = std::map<unsigned long, std::string>;

// The numberings in which a number without a name breaks the contract.
constexpr std::array kClosed{"RecordKind",     "RequestMark",       "ZigbeeStatus",         "ZigbeeNotice",
                             "HueCommandCode", "HueResultType",     "NestCommandCode",      "NestAnswerCode",
                             "DeviceKind",     "ozw_OperationCode", "ozw_ControllerCommand"};

std::string quoted(std::string_view text) {
  std::string literal = "\"";
  for (const char letter : text) {
    if (letter == '"' || letter == '\\') literal += '\\';
    literal += letter;
  }
  return literal + "\"";
}

// "ZwNodeInfo" becomes "zw_node_info".
std::string filterName(const std::string& name) {
  const std::string spaced = std::regex_replace(name, std::regex("([a-z0-9])([A-Z])"), "$1_$2");
  std::string lowered;
  for (const char letter : spaced) lowered += static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
  return lowered;
}

// The part of the enumerators' names that is the same in all of them, up to an underscore.
std::size_t commonPrefix(const std::vector<Enumerator>& enumerators) {
  std::size_t length = enumerators.front().name.size();
  for (const Enumerator& row : enumerators) {
    const auto differs = std::mismatch(row.name.begin(), row.name.end(), enumerators.front().name.begin(),
                                       enumerators.front().name.end());
    length = std::min(length, static_cast<std::size_t>(differs.first - row.name.begin()));
  }
  const std::size_t underscore = enumerators.front().name.rfind('_', length == 0 ? 0 : length - 1);
  return underscore == std::string::npos ? 0 : underscore + 1;
}

// "HUE_BULB_ADDED" becomes "bulb added"; the driver's names stay as they are.
std::string inWords(const Enumerator& row, std::size_t prefix) {
  std::string words = row.name.substr(prefix);
  if (words.find_first_not_of("0123456789") == std::string::npos) words = "answer " + words;
  const bool isUpper =
      std::none_of(words.begin(), words.end(), [](char letter) { return letter >= 'a' && letter <= 'z'; });
  for (char& letter : words) {
    if (letter == '_') letter = ' ';
    if (isUpper) letter = static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
  }
  return row.meaning.empty() ? words : words + " (" + row.meaning + ")";
}

Names namesOf(const std::vector<Enumerator>& enumerators) {
  Names names;
  const std::size_t prefix = commonPrefix(enumerators);
  for (const Enumerator& row : enumerators) {
    std::string& name = names[row.number];
    name += (name.empty() ? "" : " / ") + inWords(row, prefix);
  }
  return names;
}

constexpr unsigned kBytes = 256;

Names deviceTypes() {
  Names names;
  std::array<char, 180> name{};
  DevtypeEnumToStr(DEVTYPE_UNKNOWN, name.data());
  const std::string unknown = name.data();
  for (unsigned number = 0; number < kBytes; ++number) {
    DevtypeEnumToStr(static_cast<DevType>(number), name.data());
    if (number == 0 || name.data() != unknown) names[number] = name.data();
  }
  return names;
}

Names commandClasses() {
  Names names;
  for (unsigned number = 0; number < kBytes; ++number) {
    const std::string name = cclassStr(static_cast<unsigned char>(number));
    if (name != "NO OPERATION") names[number] = name;
  }
  return names;
}

Names clusters() {
  Names names;
  for (const ZbClusterRule& row : zbClusterRules) names[static_cast<unsigned long>(row.cluster)] = row.title;
  return names;
}

// Some zone types have a second name for single models; the general one comes last.
Names zoneTypes() {
  Names names;
  for (const ZbZoneName& row : zbZoneNames) names[static_cast<unsigned long>(row.zoneType)] = row.name;
  return names;
}

std::map<std::string, Names> allNumbers(const Enumerations& enumerations) {
  std::map<std::string, Names> numbers;
  for (const auto& [name, enumerators] : enumerations) numbers[name] = namesOf(enumerators);
  numbers["DevType"] = deviceTypes();
  numbers["CommandClass"] = commandClasses();
  numbers["Cluster"] = clusters();
  numbers["ZoneType"] = zoneTypes();
  return numbers;
}

// In the order in which the meaning names them; then those that have no enumeration.
std::vector<std::string> numberingsOf(const FieldText& field, const Enumerations& enumerations) {
  const std::set<std::string> found = docs::namedIn(field.meaning, enumerations);
  std::vector<std::string> named(found.begin(), found.end());
  std::sort(named.begin(), named.end(), [&field](const std::string& one, const std::string& other) {
    return field.meaning.find(one) < field.meaning.find(other);
  });
  if (field.meaning.starts_with("Z-Wave command class") || field.name == "commandClasses")
    named.emplace_back("CommandClass");
  if (field.name == "cluster") named.emplace_back("Cluster");
  if (field.name == "zoneType") named.emplace_back("ZoneType");
  return named;
}

std::string kindOf(const std::string& type) {
  static const std::map<std::string, std::string> numbers{
      {"unsigned char", "uint8"}, {"unsigned short", "uint16"}, {"int", "int32"}, {"unsigned int", "uint32"}};
  const auto number = numbers.find(type);
  if (number != numbers.end()) return number->second;
  if (type.starts_with("char[")) return "string";
  return type.starts_with("unsigned char[") ? "bytes" : "list";
}

// What a list ends with stands in the meaning of its entry's first field.
std::string endsOf(const std::string& meaning) {
  static const std::regex end(R"((0x[0-9A-F]+|\d+) ends the (list|table))");
  static const std::regex ends(R"(ends with (0x[0-9A-F]+) when received, with (\d+) when finished)");
  std::smatch found;
  if (std::regex_search(meaning, found, end)) return ", ends = {" + found.str(1) + ", " + found.str(1) + "}";
  if (std::regex_search(meaning, found, ends)) return ", ends = {" + found.str(1) + ", " + found.str(2) + "}";
  return "";
}

void writeFieldTable(std::ostream& out, const FieldText& field, const Enumerations& enumerations) {
  const std::string kind = kindOf(field.type);
  out << "    {name = " << quoted(field.name) << ", filter = " << quoted(filterName(field.name))
      << ", offset = " << field.offset << ", size = " << field.size << ", kind = " << quoted(kind);
  if (kind == "list") out << ", entry = " << quoted(field.type.substr(0, field.type.find('[')));
  out << endsOf(field.meaning) << ", numbers = {";
  const char* separator = "";
  for (const std::string& numbering : numberingsOf(field, enumerations)) {
    out << separator << quoted(numbering);
    separator = ", ";
  }
  out << "},\n     meaning = " << quoted(field.meaning) << "},\n";
}

void writeRecordTable(std::ostream& out, const RecordText& record, const Enumerations& enumerations) {
  out << "  " << record.name << " = {filter = " << quoted(filterName(record.name)) << ", size = " << record.size
      << ", purpose = " << quoted(record.purpose) << ", fields = {\n";
  for (const FieldText& field : record.fields) writeFieldTable(out, field, enumerations);
  out << "  }},\n";
}

void writeDatagramTables(std::ostream& out) {
  const tembra::sim::Endpoint& library = tembra::sim::kLibrary;
  out << "\nlocal LIBRARY = {address = " << quoted(library.address) << ", port = " << library.port << "}\n"
      << "\nlocal SERVERS = {\n";
  for (const docs::DatagramRow& row : docs::kDatagrams) {
    out << "  {name = " << quoted(row.server.name) << ", address = " << quoted(row.server.address)
        << ", port = " << row.server.port << ", request = " << quoted(row.request);
    if (!row.answer.empty()) out << ", answer = " << quoted(row.answer);
    out << "},\n";
  }
  out << "}\n\nlocal COMMANDS = {\n";
  for (const docs::CommandRow& row : docs::kCommands) {
    out << "  {record = " << quoted(row.record) << ", " << quoted(row.meaning) << ", " << quoted(row.firstField) << ", "
        << quoted(row.first);
    if (!row.secondField.empty()) out << ", " << quoted(row.secondField) << ", " << quoted(row.second);
    out << "},\n";
  }
  out << "}\n";
}

void writeNumbers(std::ostream& out, const std::map<std::string, Names>& numbers, const std::set<std::string>& used) {
  out << "\nlocal NUMBERS = {\n";
  for (const std::string& numbering : used) {
    out << "  " << numbering << " = {\n";
    for (const auto& [number, name] : numbers.at(numbering))
      out << "    [" << number << "] = " << quoted(name) << ",\n";
    out << "  },\n";
  }
  out << "}\n\n-- Numberings in which a number without a name breaks the contract.\nlocal CLOSED = {\n";
  for (const char* name : kClosed) out << "  " << name << " = true,\n";
  out << "}\n";
}

}  // namespace

bool docs::writeWiresharkTables(const std::filesystem::path& path) {
  const std::filesystem::path headers = TEMBRA_HEADERS;
  const Enumerations enumerations = enumerationsOf(headers / "vocabulary.h");
  std::vector<RecordText> records = recordsOf(headers / "records.h");
  const std::vector<RecordText> entries = entriesOf(headers / "records.h");
  records.insert(records.end(), entries.begin(), entries.end());
  std::set<std::string> used;
  std::ofstream out(path);
  out << "-- Made by make-docs from the records and numbers of the public headers; do not edit.\n\nlocal RECORDS = {\n";
  for (const RecordText& record : records) {
    writeRecordTable(out, record, enumerations);
    for (const FieldText& field : record.fields) {
      for (const std::string& numbering : numberingsOf(field, enumerations)) used.insert(numbering);
    }
  }
  out << "}\n";
  writeNumbers(out, allNumbers(enumerations), used);
  writeDatagramTables(out);
  return static_cast<bool>(out.flush());
}
