// The most memory that the process ever had.
#ifndef TEMBRA_TESTS_DATABASE_PEAK_MEMORY_H
#define TEMBRA_TESTS_DATABASE_PEAK_MEMORY_H

#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include "reliability/footprint.h"

/// What the Depot library asks for may be up to 2 GB where a record claims as much; it must not touch it.
class PeakMemory {
 public:
  /// How far the peak has risen since this was made. A sanitizer's own memory says nothing.
  void expectFlat() const {
    if (isSanitized()) return;
    EXPECT_LT(growth(), kMostGrowth);
  }

  [[nodiscard]] long growth() const { return now() - before_; }  // in KiB

 private:
  static constexpr long kMostGrowth = 64L << 10;

  // By the kernel's count of this program; that of getrusage includes what ran in the process before.
  static long now() {
    std::ifstream status("/proc/self/status");
    std::string word;
    while (status >> word && word != "VmHWM:") {
    }
    long kibibytes = 0;
    status >> kibibytes;
    return kibibytes;
  }

  const long before_ = now();
};

#endif
