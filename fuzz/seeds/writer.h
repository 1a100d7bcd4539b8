// One seed: the bytes that a target reads as its script.
#ifndef TEMBRA_FUZZ_SEEDS_WRITER_H
#define TEMBRA_FUZZ_SEEDS_WRITER_H

#include <filesystem>
#include <fstream>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace fuzz {

class SeedWriter {
 public:
  /// A record, a number or an enumerator as it stands.
  template <typename T>
  void add(const T& value) {
    addBytes({reinterpret_cast<const char*>(&value), sizeof value});
  }
  void addBytes(std::string_view bytes) { bytes_.append(bytes); }

  /// A text as Script::text reads it.
  SeedWriter& addText(std::string_view text) {
    add(static_cast<unsigned char>(text.size()));
    addBytes(text);
    return *this;
  }

  [[nodiscard]] std::string_view bytes() const { return bytes_; }

  /// Writes a file that is named by its content.
  void write(const std::filesystem::path& folder) const {
    std::filesystem::create_directories(folder);
    const auto file = folder / ("seed-" + std::to_string(std::hash<std::string>()(bytes_)));
    std::ofstream stream(file, std::ios::binary);
    stream << bytes_;
    if (!stream.flush()) throw std::runtime_error("cannot write " + file.string());
  }

 private:
  std::string bytes_;
};

/// Seeds that may follow one another, in few files.
class SeedSeries {
 public:
  explicit SeedSeries(std::filesystem::path folder) : folder_(std::move(folder)) {}

  void add(const SeedWriter& seed) {
    constexpr std::size_t longest = 4096;  // what the fuzzer reads
    if (current_.bytes().size() + seed.bytes().size() > longest) finish();
    current_.addBytes(seed.bytes());
  }
  void finish() {
    if (!current_.bytes().empty()) current_.write(folder_);
    current_ = {};
  }

 private:
  std::filesystem::path folder_;
  SeedWriter current_;
};

}  // namespace fuzz

#endif
