// Signals of the front end's process during an operation. Only a real end of a receive is a time-out.
#include <pthread.h>

#include <chrono>
#include <csignal>
#include <thread>

#include "kernel_stage.h"
#include "signal_storm.h"

using kit::Node;

namespace {

/// While it lives, this thread takes no SIGALRM: it goes to any other thread that does.
class Deaf {
 public:
  Deaf() { set(SIG_BLOCK); }
  ~Deaf() { set(SIG_UNBLOCK); }
  Deaf(const Deaf&) = delete;
  Deaf& operator=(const Deaf&) = delete;

 private:
  static void set(int how) {
    sigset_t alarm;
    sigemptyset(&alarm);
    sigaddset(&alarm, SIGALRM);
    pthread_sigmask(how, &alarm, nullptr);
  }
};

void letPass(std::chrono::milliseconds time) {
  const auto end = std::chrono::steady_clock::now() + time;
  while (std::chrono::steady_clock::now() < end) std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

using Signals = KernelStage;

}  // namespace

TEST_F(Signals, AStormIsNoTimeOut) {
  const SignalStorm storm;
  connect();
  assoc.addDevZigbeeZwave();
  letPass(std::chrono::milliseconds(200));
  EXPECT_GT(SignalStorm::taken(), 20) << "the storm is one";
  {
    const Deaf deaf;
    const int before = SignalStorm::taken();
    letPass(std::chrono::milliseconds(200));
    EXPECT_EQ(SignalStorm::taken(), before) << "nobody else takes them";
    for (int i = 0; i < 100; ++i) pthread_kill(receiver_thread, SIGALRM);
    letPass(std::chrono::milliseconds(50));
    EXPECT_EQ(SignalStorm::taken(), before);
  }
  router.zwave().post(Node(5).bytes());
  awaitEvents(EVENT_ADDING);
  letPass(std::chrono::milliseconds(100));
  router.zwave().post(Node(5).bytes());
  awaitEvents(EVENT_GETTING_INFO);
  EXPECT_EQ(told("Didn't get packet"), 0U);
  EXPECT_EQ(events(EVENT_TIMEOUT), 0);
}

TEST_F(Signals, TheCallersMaskIsAsBefore) {
  sigset_t before;
  sigset_t after;
  pthread_sigmask(SIG_SETMASK, nullptr, &before);
  connect();
  pthread_sigmask(SIG_SETMASK, nullptr, &after);
  for (int signal = 1; signal < SIGRTMAX; ++signal) {
    EXPECT_EQ(sigismember(&before, signal), sigismember(&after, signal)) << signal;
  }
}
