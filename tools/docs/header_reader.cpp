#include "docs/header_reader.h"

#include <fstream>
#include <regex>
#include <stdexcept>

namespace docs {
namespace {

std::string contents(const std::filesystem::path& file) {
  std::ifstream stream(file);
  if (!stream) throw std::runtime_error("cannot read " + file.string());
  return {std::istreambuf_iterator<char>(stream), {}};
}

void append(std::string& text, const std::string& more) {
  if (!more.empty()) text += (text.empty() ? "" : " ") + more;
}

// Of a type that a list's entry is made of.
std::size_t sizeOf(const std::string& type) {
  if (type == "unsigned char") return 1;
  if (type == "unsigned short") return 2;
  static const std::regex text(R"(char\[(\d+)\])");
  std::smatch found;
  if (!std::regex_match(type, found, text)) throw std::runtime_error("an entry has a " + type);
  return std::stoul(found[1]);
}

// Reads a header line by line: a comment belongs to what follows it, a trailing one to its line.
class RecordReader {
 public:
  void read(const std::string& line) {
    static const std::regex comment(R"(\s*/// ?(.*))");
    static const std::regex record(R"(struct (\w+) \{)");
    static const std::regex field(R"(  ([\w ]+?) (\w+)((?:\[\d+\])*);(?:\s*///< (.*))?)");
    static const std::regex offset(R"(TEMBRA_FIELD_AT\((\w+), (\w+), (\d+)\);)");
    static const std::regex size(R"(static_assert\(sizeof\((\w+)\) == (\d+),.*)");
    std::smatch found;
    if (std::regex_match(line, found, comment)) return append(comment_, found[1]);
    if (std::regex_match(line, found, record)) {
      records_.push_back({found[1], comment_, 0, {}});
    } else if (!records_.empty() && std::regex_match(line, found, field)) {
      append(comment_, found[4]);
      records_.back().fields.push_back({std::string(found[1]) + std::string(found[3]), found[2], comment_});
    } else if (std::regex_match(line, found, offset)) {
      place(found[1], found[2], std::stoul(found[3]));
    } else if (std::regex_match(line, found, size)) {
      sizes_[found[1]] = std::stoul(found[2]);
    }
    comment_.clear();
  }

  std::vector<RecordText> take() {
    std::erase_if(records_, [this](const RecordText& record) { return !placed_.contains(record.name); });
    for (RecordText& record : records_) finish(record);
    return std::move(records_);
  }

  std::vector<RecordText> takeEntries() {
    std::erase_if(records_, [this](const RecordText& record) {
      return placed_.contains(record.name) || !sizes_.contains(record.name);
    });
    for (RecordText& record : records_) {
      std::size_t offset = 0;
      for (FieldText& field : record.fields) {
        field.offset = offset;
        offset += sizeOf(field.type);
      }
      finish(record);
    }
    return std::move(records_);
  }

 private:
  void place(const std::string& record, const std::string& name, std::size_t offset) {
    placed_[record] = true;
    for (FieldText& field : records_.back().fields) {
      if (field.name == name) field.offset = offset;
    }
  }

  // A field reaches to the next one. Fields named by their offset hold bytes that nobody reads.
  void finish(RecordText& record) {
    record.size = sizes_.at(record.name);
    std::vector<FieldText>& fields = record.fields;
    for (std::size_t i = 0; i < fields.size(); ++i) {
      const std::size_t end = i + 1 < fields.size() ? fields[i + 1].offset : record.size;
      fields[i].size = end - fields[i].offset;
    }
    std::erase_if(fields, [](const FieldText& field) { return std::regex_match(field.name, std::regex("at\\d+")); });
  }

  std::string comment_;
  std::vector<RecordText> records_;
  std::map<std::string, std::size_t> sizes_;
  std::map<std::string, bool> placed_;
};

}  // namespace

std::vector<RecordText> recordsOf(const std::filesystem::path& header) {
  RecordReader reader;
  std::istringstream lines(contents(header));
  for (std::string line; std::getline(lines, line);) reader.read(line);
  return reader.take();
}

std::vector<RecordText> entriesOf(const std::filesystem::path& header) {
  RecordReader reader;
  std::istringstream lines(contents(header));
  for (std::string line; std::getline(lines, line);) reader.read(line);
  return reader.takeEntries();
}

Enumerations enumerationsOf(const std::filesystem::path& header) {
  static const std::regex begin(R"(enum (\w+) : [\w ]+ \{(.*))");
  static const std::regex comment(R"(([^/]*)(?:///?<? ?(.*))?)");
  static const std::regex enumerator(R"((\w+)(?: = (\d+))?(?:,|\s*$|\s*\}))");
  Enumerations enumerations;
  std::vector<Enumerator>* list = nullptr;
  unsigned long number = 0;
  std::istringstream lines(contents(header));
  for (std::string line; std::getline(lines, line);) {
    std::smatch found;
    if (std::regex_match(line, found, begin)) {
      list = &enumerations[found[1]];
      number = 0;
      line = std::string(found[2]);
    }
    if (list == nullptr || !std::regex_match(line, found, comment)) continue;
    const std::string code = found[1];
    for (std::sregex_iterator entry(code.begin(), code.end(), enumerator), none; entry != none; ++entry) {
      if ((*entry)[2].matched) number = std::stoul((*entry)[2]);
      list->push_back({number++, (*entry)[1], found[2]});
    }
    if (code.find('}') != std::string::npos) list = nullptr;
  }
  return enumerations;
}

std::set<std::string> namedIn(const std::string& meaning, const Enumerations& enumerations) {
  static const std::regex word(R"(\w+)");
  std::set<std::string> named;
  for (std::sregex_iterator found(meaning.begin(), meaning.end(), word), none; found != none; ++found) {
    if (enumerations.contains(found->str())) named.insert(found->str());
  }
  return named;
}

}  // namespace docs
