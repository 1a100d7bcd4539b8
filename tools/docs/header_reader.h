// The records and the numbers of the public headers with their comments, read from the headers themselves.
#ifndef TEMBRA_TOOLS_DOCS_HEADER_READER_H
#define TEMBRA_TOOLS_DOCS_HEADER_READER_H

#include <cstddef>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace docs {

struct FieldText {
  std::string type;  ///< as the header writes it, with the bounds of arrays: "char[180]"
  std::string name;
  std::string meaning;
  std::size_t offset = 0;
  std::size_t size = 0;
};

struct RecordText {
  std::string name;
  std::string purpose;
  std::size_t size = 0;
  std::vector<FieldText> fields;  ///< the named ones; bytes that nobody reads are left out
};

/// The records of a header that say where their fields stand, in the header's order.
std::vector<RecordText> recordsOf(const std::filesystem::path& header);

/// The records of a header that others hold lists of: their fields follow each other without a gap.
std::vector<RecordText> entriesOf(const std::filesystem::path& header);

struct Enumerator {
  unsigned long number;
  std::string name;
  std::string meaning;  ///< empty: the name says it
};

/// The enumerators by the name of the enumeration.
using Enumerations = std::map<std::string, std::vector<Enumerator>>;
Enumerations enumerationsOf(const std::filesystem::path& header);

/// The enumerations that a meaning names.
std::set<std::string> namedIn(const std::string& meaning, const Enumerations& enumerations);

}  // namespace docs

#endif
