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

std::map<std::string, std::string> numbersOf(const std::filesystem::path& header) {
  static const std::regex comment("//.*");
  static const std::regex enumeration(R"(enum (\w+) : [\w ]+ \{([^}]*)\})");
  static const std::regex enumerator(R"((\w+)(?: = (\d+))?(?:,|\s*$))");
  const std::string text = std::regex_replace(contents(header), comment, "");
  std::map<std::string, std::string> numbers;
  for (std::sregex_iterator found(text.begin(), text.end(), enumeration), none; found != none; ++found) {
    const std::string body = (*found)[2];
    std::string& list = numbers[(*found)[1]];
    unsigned long number = 0;
    for (std::sregex_iterator entry(body.begin(), body.end(), enumerator); entry != none; ++entry) {
      if ((*entry)[2].matched) number = std::stoul((*entry)[2]);
      list += (list.empty() ? "" : ", ") + std::to_string(number++) + " `" + std::string((*entry)[1]) + "`";
    }
  }
  return numbers;
}

}  // namespace docs
