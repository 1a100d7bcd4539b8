// A process of another user, beside the test.
#ifndef TEMBRA_TESTS_STRICT_SECOND_USER_H
#define TEMBRA_TESTS_STRICT_SECOND_USER_H

#include <functional>

/// Does something again and again until the object ends, as user 65534. Where the system gives the test no second user
/// (a namespace of a single one), the process keeps the test's own user and says so. Then the sticky bit keeps nobody
/// off, and `isAnother` is false.
class SecondUser {
 public:
  explicit SecondUser(const std::function<void()>& act);
  ~SecondUser();
  SecondUser(const SecondUser&) = delete;
  SecondUser& operator=(const SecondUser&) = delete;

  [[nodiscard]] bool isAnother() const { return isAnother_; }

  /// Does it once, and waits for its end.
  static bool once(const std::function<bool()>& act);

 private:
  int process_ = -1;
  bool isAnother_ = false;
};

#endif
