// The offset tables: every record's fields as the public headers place and explain them.
#include <fstream>
#include <set>

#include "docs/datagrams.h"
#include "docs/header_reader.h"
#include "docs/pages.h"

namespace {

using docs::FieldText;
using docs::RecordText;

constexpr char kFormatsIntroduction[] = R"(# Wire formats

Made by `make-docs` from the records and comments of `<tembra/records.h>`, `<tembra/events.h>` and
`<tembra/vocabulary.h>`; do not edit.

All numbers are little-endian. Texts end with a NUL unless they fill their field. Bytes that no table names
are not read by the library. They are zero in the commands it builds; in a record that it passes on they
stay as received.
)";

// Longer lists stand in the header only.
constexpr std::size_t kLongestList = 1000;

std::string listOf(const std::vector<docs::Enumerator>& enumerators) {
  std::string list;
  for (const docs::Enumerator& row : enumerators) {
    list += (list.empty() ? "" : ", ") + std::to_string(row.number) + " `" + row.name + "`";
  }
  return list;
}

void writeRecord(std::ostream& out, const RecordText& record, const docs::Enumerations& enumerations) {
  out << "\n## " << record.name << ", " << record.size << " bytes\n\n" << record.purpose << "\n\n";
  out << "| Offset | Size | Type | Field | Meaning |\n|---|---|---|---|---|\n";
  std::set<std::string> named;
  for (const FieldText& field : record.fields) {
    out << "| " << field.offset << " | " << field.size << " | `" << field.type << "` | `" << field.name << "` | "
        << field.meaning << " |\n";
    named.merge(docs::namedIn(field.meaning, enumerations));
  }
  for (const std::string& enumeration : named) {
    const std::string list = listOf(enumerations.at(enumeration));
    if (list.size() <= kLongestList) out << "\n`" << enumeration << "`: " << list << "\n";
  }
}

void writeDatagrams(std::ostream& out) {
  out << "\n## Datagrams\n\nThe library is at " << tembra::sim::kLibrary.address << ":" << tembra::sim::kLibrary.port
      << ". It knows a server by the address, from whatever port the datagram comes.\n\n"
      << "| Server | Address | Takes | Answers with |\n|---|---|---|---|\n";
  for (const docs::DatagramRow& row : docs::kDatagrams) {
    out << "| " << row.server.name << " | " << row.server.address << ":" << row.server.port << " | `" << row.request
        << "` | " << (row.answer.empty() ? "nothing" : "`" + std::string(row.answer) + "`") << " |\n";
  }
  out << "\n| Command | Field | Value | Field | Value |\n|---|---|---|---|---|\n";
  for (const docs::CommandRow& row : docs::kCommands) {
    out << "| `" << row.record << "`: " << row.meaning << " | `" << row.firstField << "` | \"" << row.first << "\" |";
    if (row.secondField.empty()) {
      out << " | |\n";
    } else {
      out << " `" << row.secondField << "` | \"" << row.second << "\" |\n";
    }
  }
}

}  // namespace

bool docs::writeWireFormats(const std::filesystem::path& path) {
  const std::filesystem::path headers = TEMBRA_HEADERS;
  const Enumerations enumerations = enumerationsOf(headers / "vocabulary.h");
  std::ofstream out(path);
  out << kFormatsIntroduction;
  writeDatagrams(out);
  for (const char* header : {"records.h", "events.h"}) {
    for (const RecordText& record : recordsOf(headers / header)) writeRecord(out, record, enumerations);
  }
  return static_cast<bool>(out.flush());
}
