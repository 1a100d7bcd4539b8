// The clock of a test, and the two places where the library waits for it: receiving and sleeping.
#ifndef TEMBRA_TESTS_KIT_VIRTUAL_KERNEL_H
#define TEMBRA_TESTS_KIT_VIRTUAL_KERNEL_H

#include <sys/socket.h>

#include <condition_variable>
#include <list>
#include <map>
#include <mutex>
#include <thread>

namespace kit {

/// Virtual seconds pass only when the test says so. The thread that made it is the test's; the others are parked while
/// they wait, and `settle` waits until all of the library's receive threads are parked and nothing is left to receive.
class VirtualKernel {
 public:
  VirtualKernel();

  [[nodiscard]] long now();
  void advance(long seconds);
  void settle();

  /// Waits until no receive thread is left.
  void awaitEnd();

  /// Waits until a thread other than the test's sleeps.
  void awaitSleeper();

  /// Makes the receive that is under way fail with this errno.
  void interruptReceive(int error);

  /// The next sleep returns at once with this remainder.
  void interruptSleep(unsigned remaining);

  // What the interposed functions report and ask.
  void receiverCreated();  // by the creator, so that nobody sees a moment without the thread
  void receiverBegins();   // by the thread
  void receiverEnds();     // by the thread, or by the creator when there is none after all
  void setTimeout(int descriptor, long seconds);
  void datagramPosted();
  void socketChanged(int descriptor);  // opened, shut down or closed: nothing is queued
  ssize_t receive(int descriptor, void* buffer, size_t size, int flags, sockaddr* from, socklen_t* length);
  unsigned sleep(unsigned seconds);

 private:
  struct Wait {
    long deadline;
    bool isReceive;
    bool ownedByReceiver;
    bool fired = false;
    int error = 0;
  };
  using Lock = std::unique_lock<std::mutex>;

  [[nodiscard]] bool isSettled() const;
  void settle(Lock& lock);
  void await(Lock& lock, bool (VirtualKernel::*condition)() const);
  [[nodiscard]] bool nothingFired() const;
  [[nodiscard]] bool isWithoutReceivers() const { return receivers_ == 0; }
  [[nodiscard]] bool hasSleeper() const;
  Wait* earliestUntil(long limit);
  void fire(Wait& wait, int error);
  void park(Wait& wait);
  bool leave(Wait& wait);

  const std::thread::id testThread_ = std::this_thread::get_id();
  const int wake_;
  std::mutex mutex_;
  std::condition_variable changed_;
  long now_ = 0;
  std::list<Wait*> waits_;
  std::map<int, long> timeouts_;
  int receivers_ = 0;
  int queued_ = 0;
  unsigned sleepRemainder_ = 0;
};

}  // namespace kit

#endif
