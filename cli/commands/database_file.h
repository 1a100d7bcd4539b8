// The device database's file: where it is.
#ifndef TEMBRA_CLI_DATABASE_FILE_H
#define TEMBRA_CLI_DATABASE_FILE_H

#include <string>

#include "cli/context.h"

namespace tembra::cli {

/// Tells the library where the database is. Its own text holds 9 characters; for a longer path the program goes into
/// the file's folder and names the file alone. Throws Failure (kUsage) when that does not do.
void useDatabase(const std::string& path);

/// The database's path for people: as the user gave it.
[[nodiscard]] std::string databasePath(const Options& options);

/// Before an operation that writes it.
void complainOfForeignDatabase(const Context& context);

}  // namespace tembra::cli

#endif
