// Other users of the router, who send to the library and pass for its daemons.
#ifndef TEMBRA_TESTS_CAMPAIGN_SPOOFERS_H
#define TEMBRA_TESTS_CAMPAIGN_SPOOFERS_H

#include <atomic>
#include <random>
#include <thread>

namespace campaign {

/// Sends answers of every daemon, from the daemons' addresses and from parts of them, but never from a daemon's own
/// port. They come at random moments until the object ends; they do not stand in the wire's record.
class Spoofers {
 public:
  explicit Spoofers(unsigned long seed);
  ~Spoofers();
  Spoofers(const Spoofers&) = delete;
  Spoofers& operator=(const Spoofers&) = delete;

 private:
  void run();
  void sendOne();
  int draw(int first, int last) { return std::uniform_int_distribution<int>(first, last)(random_); }

  std::mt19937_64 random_;
  std::atomic<bool> isOver_ = false;
  std::thread thread_;
};

}  // namespace campaign

#endif
