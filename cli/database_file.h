// The device database's file: where it is, and whether it is safe to let the library open it.
#ifndef TEMBRA_CLI_DATABASE_FILE_H
#define TEMBRA_CLI_DATABASE_FILE_H

#include <depot.h>

#include <memory>
#include <string>

namespace tembra::cli {

struct DepotCloser {
  void operator()(DEPOT* depot) const { dpclose(depot); }
};
using DepotReader = std::unique_ptr<DEPOT, DepotCloser>;

/// Tells the library where the database is. Its own text holds 9 characters; for a longer path the program goes into
/// the file's folder and names the file alone. Throws Failure (kUsage) when that does not do.
void useDatabase(const std::string& path);

/// Opens the file for reading, which neither changes nor creates it; waits a little for a writer to finish. Null for an
/// empty file, which is a database without records. Throws Failure (kFailed) that says what is wrong.
[[nodiscard]] DepotReader openForReading(const std::string& path);

/// To call before an operation that makes the library open the database. The library opens it for writing. It
/// repairs a file that does not open, and deletes one that does not open even then. Complains before a repair, and
/// throws Failure (kFailed) before a deletion.
void checkBeforeLibraryOpens(const std::string& path);

}  // namespace tembra::cli

#endif
