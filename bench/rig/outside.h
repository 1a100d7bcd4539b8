// Telling the library's own code from what it calls: system calls, the Depot library, the router's libraries. The
// program interposes those calls; while one runs, or the front end's callback, the thread is outside the library.
#ifndef TEMBRA_BENCH_RIG_OUTSIDE_H
#define TEMBRA_BENCH_RIG_OUTSIDE_H

#include <cstddef>

#include "platform/descriptor.h"
#include "rig/clock.h"

namespace bench {

/// While it lives the calling thread is inside the library: for a front end's call.
class Inside {
 public:
  Inside();
  ~Inside();
  Inside(const Inside&) = delete;
  Inside& operator=(const Inside&) = delete;
};

/// While it lives the calling thread is outside the library.
class Outside {
 public:
  Outside();
  ~Outside();
  Outside(const Outside&) = delete;
  Outside& operator=(const Outside&) = delete;

 private:
  bool wasInside_;
};

/// Marks the calling thread as the library's own: it is inside whenever it is not outside.
void enterForGood();

/// Measures the library's own code on all threads.
namespace own_code {

void start();
void stop();
[[nodiscard]] double seconds();
[[nodiscard]] std::size_t allocations();

/// One allocation by the calling thread; counts when it is inside the library.
void allocated();

}  // namespace own_code

/// When the library's thread first waited for a datagram since `forget`.
namespace first_wait {

void forget();
void note();
[[nodiscard]] bool happened();
[[nodiscard]] Clock::time_point when();

}  // namespace first_wait

/// While it lives the Depot library has an empty database at no cost: what is left is the library's own code. There is
/// no file that the library could check. So it complains at each look, and standard error goes nowhere meanwhile.
class NoDatabase {
 public:
  NoDatabase();
  ~NoDatabase();
  NoDatabase(const NoDatabase&) = delete;
  NoDatabase& operator=(const NoDatabase&) = delete;

  static bool isOn();

 private:
  tembra::Descriptor standardError_;
};

}  // namespace bench

#endif
