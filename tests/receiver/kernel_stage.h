// A test on the real kernel: real waits, real signals, real threads.
#ifndef TEMBRA_TESTS_RECEIVER_KERNEL_STAGE_H
#define TEMBRA_TESTS_RECEIVER_KERNEL_STAGE_H

#include <gtest/gtest.h>

#include <string>

#include "kit/router.h"

/// The service's fields belong to its threads here: a test sees the trace, which needs no lock, and the events that
/// the callback counted.
class KernelStage : public testing::Test {
 protected:
  KernelStage();

  /// Opens the connection with the counting callback.
  void connect();

  /// How often a text stands in the trace so far, or an event was told.
  std::size_t told(const std::string& text);
  static int events(int code);

  /// Waits until it was told that often; a test that waits longer than ten seconds has failed.
  void await(const std::string& text, std::size_t times = 1);
  static void awaitEvents(int code, int times = 1);

  const std::string& trace();

  kit::Router router{kit::Clock::kReal};
  TembraAssociation& assoc = router.assoc();

 private:
  std::string trace_;
};

/// Descriptors and threads of this process.
std::size_t openDescriptors();
std::size_t runningThreads();

/// Waits until the process has this many: a thread is there for a moment after its last line, and a receive thread may
/// have the database open.
void awaitDescriptors(std::size_t count);
void awaitThreads(std::size_t count);

#endif
