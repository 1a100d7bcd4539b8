// One open-to-close of the device database.
#ifndef TEMBRA_SIM_HA_DEPOT_FILE_H
#define TEMBRA_SIM_HA_DEPOT_FILE_H

#include <depot.h>

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tembra::sim {

/// Waits for the file lock. Every failure throws one sentence with the database's own words.
class DepotFile {
 public:
  explicit DepotFile(const std::string& path);

  void put(const std::string& key, std::span<const unsigned char> value);
  void put(const std::string& key, std::string_view text);
  std::optional<std::vector<unsigned char>> get(const std::string& key) const;
  void erase(const std::string& key);
  std::vector<std::string> keys() const;
  /// A file that is not closed by this is closed without a word.
  void close();

 private:
  struct Closer {
    void operator()(DEPOT* file) const { dpclose(file); }
  };

  [[noreturn]] void fail(std::string_view what) const;

  std::string path_;
  std::unique_ptr<DEPOT, Closer> file_;
};

}  // namespace tembra::sim

#endif
