// The Depot functions that open and close a database, between the library and Depot.
#include "kit/interposed_database.h"

#include <depot.h>

#include <cerrno>
#include <string>

#include "kit/faults.h"
#include "kit/real_libc.h"
#include "kit/stage.h"
#include "kit/trace.h"

using kit::Call;

namespace {

// Depot's own error code says why; errno may say more.
bool strike(Call call, const void* site) {
  if (!kit::faults().strike(call, site)) return false;
  const int error = errno;
  *dpecodeptr() = error & 0xFFFF;
  errno = error >> 16;
  return true;
}

void traceDatabase(const std::string& line, bool succeeded) {
  kit::trace().addWatched(kit::kWatchDatabase, line + (succeeded ? "" : " -> failed"));
}

void traceRecords(const std::string& line, bool succeeded) {
  kit::trace().addWatched(kit::kWatchRecords, line + (succeeded ? "" : " -> failed"));
}

// Repairing opens a database of Depot's own.
int repairUnwatched(int (*repair)(const char*), const char* name) {
  const kit::UnwatchedDatabaseUse unwatched;
  return repair(name);
}

}  // namespace

extern "C" DEPOT* dpopen(const char* name, int omode, int bnum) {
  KIT_REAL(dpopen);
  if (kit::stage() == nullptr || kit::UnwatchedDatabaseUse::isOn()) return real(name, omode, bnum);
  DEPOT* depot = strike(Call::kOpenDatabase, __builtin_return_address(0)) ? nullptr : real(name, omode, bnum);
  traceDatabase(std::string("dpopen ") + name + " " + std::to_string(omode) + " " + std::to_string(bnum),
                depot != nullptr);
  return depot;
}

extern "C" int dprepair(const char* name) {
  KIT_REAL(dprepair);
  if (kit::stage() == nullptr || kit::UnwatchedDatabaseUse::isOn()) return real(name);
  const bool failed = strike(Call::kRepairDatabase, __builtin_return_address(0));
  const int repaired = failed ? 0 : repairUnwatched(real, name);
  traceDatabase(std::string("dprepair ") + name, repaired != 0);
  return repaired;
}

extern "C" int dpiterinit(DEPOT* depot) {
  KIT_REAL(dpiterinit);
  if (kit::stage() == nullptr || kit::UnwatchedDatabaseUse::isOn()) return real(depot);
  const int begun = strike(Call::kIterateDatabase, __builtin_return_address(0)) ? 0 : real(depot);
  traceRecords("dpiterinit", begun != 0);
  return begun;
}

extern "C" char* dpiternext(DEPOT* depot, int* sp) {
  KIT_REAL(dpiternext);
  if (kit::stage() == nullptr || kit::UnwatchedDatabaseUse::isOn()) return real(depot, sp);
  char* key = strike(Call::kNextKey, __builtin_return_address(0)) ? nullptr : real(depot, sp);
  traceRecords(std::string("dpiternext ") + (key == nullptr ? "at the end" : key), true);
  return key;
}

extern "C" char* dpget(DEPOT* depot, const char* kbuf, int ksiz, int start, int max, int* sp) {
  KIT_REAL(dpget);
  if (kit::stage() == nullptr || kit::UnwatchedDatabaseUse::isOn()) {
    return real(depot, kbuf, ksiz, start, max, sp);
  }
  const bool failed = strike(Call::kReadValue, __builtin_return_address(0));
  char* value = failed ? nullptr : real(depot, kbuf, ksiz, start, max, sp);
  traceRecords(std::string("dpget ") + kbuf + " length " + std::to_string(ksiz) + " from " + std::to_string(start) +
                   " most " + std::to_string(max),
               value != nullptr);
  return value;
}

extern "C" int dpclose(DEPOT* depot) {
  KIT_REAL(dpclose);
  if (kit::stage() == nullptr || kit::UnwatchedDatabaseUse::isOn()) return real(depot);
  const int closed = real(depot);
  const bool failed = strike(Call::kCloseDatabase, __builtin_return_address(0));
  traceDatabase("dpclose", closed != 0 && !failed);
  return failed ? 0 : closed;
}
