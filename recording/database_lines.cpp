#include "recording/database_lines.h"

#include <span>
#include <sstream>

#include "recording/hexadecimal.h"

namespace tembra::recording {
namespace {

constexpr std::string_view kDatabaseWord = "database";
constexpr std::size_t kLongestRecord = 4096;

}  // namespace

std::string lineOf(const DatabaseRecord& record) {
  const auto& [key, value] = record;
  if (value.size() > kLongestRecord || key.size() > kLongestRecord) return "";
  std::size_t used = value.size();
  while (used > 0 && value[used - 1] == 0) --used;
  return std::string(kDatabaseWord) + " " + key + " " + std::to_string(value.size()) + " " +
         hexadecimal(std::span(value).first(used));
}

std::optional<DatabaseRecord> recordIn(std::string_view line) {
  std::istringstream words{std::string(line)};
  std::string word;
  std::string key;
  std::size_t size = 0;
  std::string digits;
  if (!(words >> word >> key >> size) || word != kDatabaseWord || size > kLongestRecord) return std::nullopt;
  words >> digits;
  auto value = bytesFrom(digits);
  if (!value || value->size() > size || !(words >> std::ws).eof()) return std::nullopt;
  value->resize(size);
  return DatabaseRecord{key, std::move(*value)};
}

}  // namespace tembra::recording
