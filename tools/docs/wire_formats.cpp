// The offset tables: every record's fields as the public headers place and explain them.
#include <fstream>
#include <regex>
#include <set>

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

void writeRecord(std::ostream& out, const RecordText& record, const std::map<std::string, std::string>& numbers) {
  out << "\n## " << record.name << ", " << record.size << " bytes\n\n" << record.purpose << "\n\n";
  out << "| Offset | Size | Type | Field | Meaning |\n|---|---|---|---|---|\n";
  std::set<std::string> named;
  for (const FieldText& field : record.fields) {
    out << "| " << field.offset << " | " << field.size << " | `" << field.type << "` | `" << field.name << "` | "
        << field.meaning << " |\n";
    static const std::regex word(R"(\w+)");
    for (std::sregex_iterator found(field.meaning.begin(), field.meaning.end(), word), none; found != none; ++found) {
      if (numbers.contains(found->str())) named.insert(found->str());
    }
  }
  for (const std::string& enumeration : named) {
    const std::string& list = numbers.at(enumeration);
    if (list.size() <= kLongestList) out << "\n`" << enumeration << "`: " << list << "\n";
  }
}

}  // namespace

bool docs::writeWireFormats(const std::filesystem::path& path) {
  const std::filesystem::path headers = TEMBRA_HEADERS;
  const auto numbers = numbersOf(headers / "vocabulary.h");
  std::ofstream out(path);
  out << kFormatsIntroduction;
  for (const char* header : {"records.h", "events.h"}) {
    for (const RecordText& record : recordsOf(headers / header)) writeRecord(out, record, numbers);
  }
  return static_cast<bool>(out.flush());
}
