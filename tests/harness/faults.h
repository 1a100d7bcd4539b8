// Failures that a test orders for the library's next system calls.
#ifndef TEMBRA_TESTS_HARNESS_FAULTS_H
#define TEMBRA_TESTS_HARNESS_FAULTS_H

#include <map>
#include <mutex>

namespace harness {

enum class Call {
  Socket,
  SetPriority,  // setsockopt(SO_PRIORITY)
  SetTimeout,   // setsockopt(SO_RCVTIMEO)
  Bind,
  Sendto,
  CreateThread,  // pthread_create; returns the error, errno holds another one
  Popen,
  OpenDatabase,    // dpopen
  RepairDatabase,  // dprepair
  CloseDatabase,   // dpclose; the database is closed all the same
  IterateDatabase  // dpiterinit
};

class Faults {
 public:
  /// The next `times` calls fail with this errno (or Depot error code), after `spared` calls that do not.
  void order(Call call, int error, int times = 1, int spared = 0);

  /// Whether this call must fail; if so, errno is set.
  bool strike(Call call);

 private:
  struct Order {
    int error = 0;
    int times = 0;
    int spared = 0;
  };
  std::mutex mutex_;
  std::map<Call, Order> orders_;
};

Faults& faults();

}  // namespace harness

#endif
