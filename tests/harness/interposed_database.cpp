// The Depot functions that open and close a database, between the library and Depot.
#include "harness/interposed_database.h"

#include <depot.h>

#include <cerrno>
#include <string>

#include "harness/faults.h"
#include "harness/real_libc.h"
#include "harness/stage.h"
#include "harness/trace.h"

using harness::Call;

namespace {

// Depot's own error code says why, not errno.
bool strike(Call call) {
  if (!harness::faults().strike(call)) return false;
  *dpecodeptr() = errno;
  return true;
}

void traceDatabase(const std::string& line, bool succeeded) {
  harness::trace().addWatched(harness::kWatchDatabase, line + (succeeded ? "" : " -> failed"));
}

void traceRecords(const std::string& line, bool succeeded) {
  harness::trace().addWatched(harness::kWatchRecords, line + (succeeded ? "" : " -> failed"));
}

// Repairing opens a database of Depot's own.
int repairUnwatched(int (*repair)(const char*), const char* name) {
  const harness::UnwatchedDatabaseUse unwatched;
  return repair(name);
}

}  // namespace

extern "C" DEPOT* dpopen(const char* name, int mode, int buckets) {
  HARNESS_REAL(dpopen);
  if (harness::stage() == nullptr || harness::UnwatchedDatabaseUse::isOn()) return real(name, mode, buckets);
  DEPOT* depot = strike(Call::OpenDatabase) ? nullptr : real(name, mode, buckets);
  traceDatabase(std::string("dpopen ") + name + " " + std::to_string(mode) + " " + std::to_string(buckets),
                depot != nullptr);
  return depot;
}

extern "C" int dprepair(const char* name) {
  HARNESS_REAL(dprepair);
  if (harness::stage() == nullptr || harness::UnwatchedDatabaseUse::isOn()) return real(name);
  const bool failed = strike(Call::RepairDatabase);
  const int repaired = failed ? 0 : repairUnwatched(real, name);
  traceDatabase(std::string("dprepair ") + name, repaired != 0);
  return repaired;
}

extern "C" int dpiterinit(DEPOT* depot) {
  HARNESS_REAL(dpiterinit);
  if (harness::stage() == nullptr || harness::UnwatchedDatabaseUse::isOn()) return real(depot);
  const int begun = strike(Call::IterateDatabase) ? 0 : real(depot);
  traceRecords("dpiterinit", begun != 0);
  return begun;
}

extern "C" char* dpiternext(DEPOT* depot, int* size) {
  HARNESS_REAL(dpiternext);
  if (harness::stage() == nullptr || harness::UnwatchedDatabaseUse::isOn()) return real(depot, size);
  char* key = real(depot, size);
  traceRecords(std::string("dpiternext ") + (key == nullptr ? "at the end" : key), true);
  return key;
}

extern "C" char* dpget(DEPOT* depot, const char* key, int keyLength, int start, int most, int* size) {
  HARNESS_REAL(dpget);
  if (harness::stage() == nullptr || harness::UnwatchedDatabaseUse::isOn()) {
    return real(depot, key, keyLength, start, most, size);
  }
  char* value = real(depot, key, keyLength, start, most, size);
  traceRecords(std::string("dpget ") + key + " length " + std::to_string(keyLength) + " from " + std::to_string(start) +
                   " most " + std::to_string(most),
               value != nullptr);
  return value;
}

extern "C" int dpclose(DEPOT* depot) {
  HARNESS_REAL(dpclose);
  if (harness::stage() == nullptr || harness::UnwatchedDatabaseUse::isOn()) return real(depot);
  const int closed = real(depot);
  const bool failed = strike(Call::CloseDatabase);
  traceDatabase("dpclose", closed != 0 && !failed);
  return failed ? 0 : closed;
}
