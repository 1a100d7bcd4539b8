// Heap allocations of the library's own code. Those of the Depot library, the router's libraries, and the C library's
// popen and name look-ups do not count: the library has to call them.
#ifndef TEMBRA_BENCH_RIG_OWN_ALLOCATIONS_H
#define TEMBRA_BENCH_RIG_OWN_ALLOCATIONS_H

#include <cstddef>
#include <string>
#include <vector>

#include "rig/datagrams.h"

namespace bench {

/// While handling `count` such datagrams.
std::size_t allocationsForDatagrams(const Datagram& datagram, int count);

struct CallCount {
  std::string name;
  std::size_t allocations;
};

/// Of each public call of the service object, and of the free functions.
std::vector<CallCount> allocationsOfPublicCalls();

}  // namespace bench

#endif
