// An empty device database of one's own, so that classifying does not touch the system's.
#ifndef TEMBRA_CLI_PRIVATE_DATABASE_H
#define TEMBRA_CLI_PRIVATE_DATABASE_H

#include <filesystem>
#include <string>

namespace tembra::cli {

/// While it lives, the library's database is a new file in a folder of its own, which is the working folder.
class PrivateDatabase {
 public:
  /// The next device is the first of its home. Throws Failure when no folder can be made.
  PrivateDatabase();
  ~PrivateDatabase();
  PrivateDatabase(const PrivateDatabase&) = delete;
  PrivateDatabase& operator=(const PrivateDatabase&) = delete;

 private:
  std::filesystem::path before_;
  std::filesystem::path folder_;
  std::string nameBefore_;
};

}  // namespace tembra::cli

#endif
