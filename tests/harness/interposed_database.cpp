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

// Depot's own error code says why; errno may say more.
bool strike(Call call, const void* site) {
  if (!harness::faults().strike(call, site)) return false;
  const int error = errno;
  *dpecodeptr() = error & 0xFFFF;
  errno = error >> 16;
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

extern "C" DEPOT* dpopen(const char* name, int omode, int bnum) {
  HARNESS_REAL(dpopen);
  if (harness::stage() == nullptr || harness::UnwatchedDatabaseUse::isOn()) return real(name, omode, bnum);
  DEPOT* depot = strike(Call::OpenDatabase, __builtin_return_address(0)) ? nullptr : real(name, omode, bnum);
  traceDatabase(std::string("dpopen ") + name + " " + std::to_string(omode) + " " + std::to_string(bnum),
                depot != nullptr);
  return depot;
}

extern "C" int dprepair(const char* name) {
  HARNESS_REAL(dprepair);
  if (harness::stage() == nullptr || harness::UnwatchedDatabaseUse::isOn()) return real(name);
  const bool failed = strike(Call::RepairDatabase, __builtin_return_address(0));
  const int repaired = failed ? 0 : repairUnwatched(real, name);
  traceDatabase(std::string("dprepair ") + name, repaired != 0);
  return repaired;
}

extern "C" int dpiterinit(DEPOT* depot) {
  HARNESS_REAL(dpiterinit);
  if (harness::stage() == nullptr || harness::UnwatchedDatabaseUse::isOn()) return real(depot);
  const int begun = strike(Call::IterateDatabase, __builtin_return_address(0)) ? 0 : real(depot);
  traceRecords("dpiterinit", begun != 0);
  return begun;
}

extern "C" char* dpiternext(DEPOT* depot, int* sp) {
  HARNESS_REAL(dpiternext);
  if (harness::stage() == nullptr || harness::UnwatchedDatabaseUse::isOn()) return real(depot, sp);
  char* key = strike(Call::NextKey, __builtin_return_address(0)) ? nullptr : real(depot, sp);
  traceRecords(std::string("dpiternext ") + (key == nullptr ? "at the end" : key), true);
  return key;
}

extern "C" char* dpget(DEPOT* depot, const char* kbuf, int ksiz, int start, int max, int* sp) {
  HARNESS_REAL(dpget);
  if (harness::stage() == nullptr || harness::UnwatchedDatabaseUse::isOn()) {
    return real(depot, kbuf, ksiz, start, max, sp);
  }
  const bool failed = strike(Call::ReadValue, __builtin_return_address(0));
  char* value = failed ? nullptr : real(depot, kbuf, ksiz, start, max, sp);
  traceRecords(std::string("dpget ") + kbuf + " length " + std::to_string(ksiz) + " from " + std::to_string(start) +
                   " most " + std::to_string(max),
               value != nullptr);
  return value;
}

extern "C" int dpclose(DEPOT* depot) {
  HARNESS_REAL(dpclose);
  if (harness::stage() == nullptr || harness::UnwatchedDatabaseUse::isOn()) return real(depot);
  const int closed = real(depot);
  const bool failed = strike(Call::CloseDatabase, __builtin_return_address(0));
  traceDatabase("dpclose", closed != 0 && !failed);
  return failed ? 0 : closed;
}
