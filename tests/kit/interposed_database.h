// Tells the library's use of Depot from the test's own and from Depot's.
#ifndef TEMBRA_TESTS_KIT_INTERPOSED_DATABASE_H
#define TEMBRA_TESTS_KIT_INTERPOSED_DATABASE_H

namespace kit {

/// While it lives, what this thread does with Depot is neither traced nor made to fail.
class UnwatchedDatabaseUse {
 public:
  UnwatchedDatabaseUse() { ++depth(); }
  ~UnwatchedDatabaseUse() { --depth(); }
  UnwatchedDatabaseUse(const UnwatchedDatabaseUse&) = delete;
  UnwatchedDatabaseUse& operator=(const UnwatchedDatabaseUse&) = delete;
  static bool isOn() { return depth() > 0; }

 private:
  static int& depth() {
    thread_local int count = 0;
    return count;
  }
};

}  // namespace kit

#endif
