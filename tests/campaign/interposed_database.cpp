// One user of the device database at a time. On a router its users are processes, which the file's lock keeps apart;
// that lock does not tell the threads of this one process apart.
#include <depot.h>

#include <mutex>

#include "kit/real_libc.h"

namespace {

std::recursive_mutex& databaseUse() {
  static std::recursive_mutex& one = *new std::recursive_mutex;  // used until the very end of the process
  return one;
}

}  // namespace

extern "C" DEPOT* dpopen(const char* name, int mode, int buckets) {
  KIT_REAL(dpopen);
  databaseUse().lock();
  DEPOT* const depot = real(name, mode, buckets);
  if (depot == nullptr) databaseUse().unlock();
  return depot;
}

extern "C" int dpclose(DEPOT* depot) {
  KIT_REAL(dpclose);
  const int result = real(depot);
  databaseUse().unlock();
  return result;
}

extern "C" int dprepair(const char* name) {
  KIT_REAL(dprepair);
  const std::lock_guard lock(databaseUse());
  return real(name);
}
