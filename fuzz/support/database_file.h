// The device database as other processes leave it.
#ifndef TEMBRA_FUZZ_SUPPORT_DATABASE_FILE_H
#define TEMBRA_FUZZ_SUPPORT_DATABASE_FILE_H

#include <depot.h>

#include <cstdint>
#include <span>
#include <string>

namespace fuzz {

using Bytes = std::span<const std::uint8_t>;

/// The file, open for writing, made when there is none. What cannot be written is not.
class DatabaseWriter {
 public:
  DatabaseWriter();
  ~DatabaseWriter();
  DatabaseWriter(const DatabaseWriter&) = delete;
  DatabaseWriter& operator=(const DatabaseWriter&) = delete;

  void put(const std::string& key, Bytes value);
  void drop(const std::string& key);
  void close();

 private:
  DEPOT* depot_;
};

/// Files that are no database any more.
void writeDatabaseFile(Bytes content);
void cutDatabaseFile(std::size_t length);
void lengthenDatabaseFile();
void removeDatabaseFile();

/// Size of the file, 0 when there is none.
std::size_t databaseFileSize();

}  // namespace fuzz

#endif
