// The files of a recording.
#ifndef TEMBRA_CLI_RECORD_FILE_H
#define TEMBRA_CLI_RECORD_FILE_H

#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "cli/record/datagram.h"

namespace tembra::cli {

/// One file: datagrams with comments, or lines alone.
class RecordFile {
 public:
  RecordFile() = default;
  RecordFile(const RecordFile&) = delete;
  RecordFile& operator=(const RecordFile&) = delete;
  virtual ~RecordFile() = default;

  virtual void line(long long time, const std::string& line) = 0;
  virtual void datagram(const Datagram& datagram) = 0;
  virtual void end() = 0;
  [[nodiscard]] virtual std::uintmax_t size() const = 0;
  /// One sentence when something could not be written, else empty.
  [[nodiscard]] virtual std::string trouble() const = 0;
};

/// Puts what comes from several sides into the order of time, and into files of which the older one goes.
class Recording {
 public:
  /// What each file begins with, as comments of the recording.
  using Facts = std::function<std::vector<std::string>()>;

  /// @param ring most bytes of both files together; 0: one file without a limit
  /// @param facts asked when a file of datagrams is begun
  Recording(std::filesystem::path file, bool hasDatagrams, std::uintmax_t ring, Facts facts);

  void line(long long time, std::string line);
  void datagram(Datagram datagram);

  /// Writes what came before a moment of the steady clock, and what is older by its own time. Throws Failure when
  /// something cannot be written.
  void flush(long long cameBefore);
  /// Writes the rest.
  void end();

  [[nodiscard]] std::size_t datagrams() const { return datagrams_; }
  [[nodiscard]] std::size_t lines() const { return lines_; }
  /// "12 datagrams and 3 lines of front ends": what was written.
  [[nodiscard]] std::string contents() const;

 private:
  struct Item {
    std::string line;  ///< empty: a datagram
    Datagram datagram;
    long long came;  ///< by the steady clock: the time of day may be set meanwhile
  };

  void open();
  void check() const;
  void write(long long time, const Item& item);

  const std::filesystem::path path_;
  const bool hasDatagrams_;
  const std::uintmax_t ring_;
  const Facts facts_;
  std::unique_ptr<RecordFile> file_;
  std::multimap<long long, Item> waiting_;
  std::size_t datagrams_ = 0;
  std::size_t lines_ = 0;
  std::size_t comments_ = 0;  ///< lines that wait for the next datagram
};

}  // namespace tembra::cli

#endif
