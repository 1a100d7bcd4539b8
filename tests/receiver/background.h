// A thread that does something over and over while a test goes on.
#ifndef TEMBRA_TESTS_RECEIVER_BACKGROUND_H
#define TEMBRA_TESTS_RECEIVER_BACKGROUND_H

#include <atomic>
#include <functional>
#include <thread>

class Background {
 public:
  explicit Background(std::function<void(int turn)> step)
      : thread_([this, step = std::move(step)] {
          for (int turn = 0; !ended_; ++turn) step(turn);
        }) {}
  ~Background() {
    ended_ = true;
    thread_.join();
  }
  Background(const Background&) = delete;
  Background& operator=(const Background&) = delete;

 private:
  std::atomic<bool> ended_{false};
  std::thread thread_;
};

#endif
