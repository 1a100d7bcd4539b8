// Device databases in whatever state a test needs them.
#ifndef TEMBRA_TESTS_CLI_DATABASE_H
#define TEMBRA_TESTS_CLI_DATABASE_H

#include <depot.h>
#include <tembra/records.h>

#include <memory>
#include <string>

namespace tembra::test {

/// Where the library looks for it.
inline constexpr char kDatabase[] = "/tmp/ddb";

struct Closed {
  void operator()(DEPOT* depot) const { dpclose(depot); }
};
using Writer = std::unique_ptr<DEPOT, Closed>;

/// The database, locked as long as this lives; created when missing.
[[nodiscard]] Writer openWriter(const std::string& path = kDatabase);

void put(DEPOT* depot, const std::string& key, const std::string& value);

/// A device record's bytes.
[[nodiscard]] std::string record(int id, const std::string& name, const std::string& typeName, int radioKind,
                                 unsigned node, unsigned address);

/// The file of a database of 50 devices, whose records stand in the order of their ids from 1 on.
[[nodiscard]] std::string healthyDatabase();

void writeFile(const std::string& path, const std::string& bytes);
[[nodiscard]] std::string readFile(const std::string& path);

}  // namespace tembra::test

#endif
