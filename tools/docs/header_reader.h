// The records and the numbers of the public headers with their comments, read from the headers themselves.
#ifndef TEMBRA_TOOLS_DOCS_HEADER_READER_H
#define TEMBRA_TOOLS_DOCS_HEADER_READER_H

#include <cstddef>
#include <filesystem>
#include <map>
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

/// "0 `RECORD_ZIGBEE`, 2 `RECORD_ZWAVE`" by the name of the enumeration.
std::map<std::string, std::string> numbersOf(const std::filesystem::path& header);

}  // namespace docs

#endif
