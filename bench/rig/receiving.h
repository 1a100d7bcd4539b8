// Feeds a receive thread, the library's or a bare one, with datagrams that wait for it, and sees how long it takes.
#ifndef TEMBRA_BENCH_RIG_RECEIVING_H
#define TEMBRA_BENCH_RIG_RECEIVING_H

#include <tembra/association.h>

#include <atomic>
#include <thread>

#include "rig/clock.h"
#include "rig/daemons.h"
#include "rig/datagrams.h"

namespace bench {

/// Holds a receive thread in its callback until the datagrams that it is to handle are all there.
class Turnstile {
 public:
  // On the feeding thread.
  void awaitArrival() const;
  void letGo();
  /// @return when the thread went on, until when it came to the closing datagram
  double awaitEnd();

  // On the receive thread, with the number of a gate's datagram.
  void pass(int number);

 private:
  std::atomic<bool> arrived_{false};
  std::atomic<bool> released_{false};
  std::atomic<bool> ended_{false};
  Clock::time_point from_;
  Clock::time_point to_;
};

inline constexpr int kOpeningGate = 1;
inline constexpr int kClosingGate = 2;

/// Something that receives datagrams at an address.
class Receiving {
 public:
  virtual ~Receiving() = default;
  [[nodiscard]] virtual sockaddr_in address() const = 0;
  virtual void prepareFor(const Datagram& datagram) = 0;
  [[nodiscard]] Turnstile& turnstile() { return turnstile_; }

  /// Events, or calls of the empty callback, so far.
  [[nodiscard]] long told() const { return told_.load(std::memory_order_acquire); }

 protected:
  void tell() { told_.store(told_.load(std::memory_order_relaxed) + 1, std::memory_order_release); }

 private:
  Turnstile turnstile_;
  std::atomic<long> told_{0};
};

/// The library with its connection open. One at a time.
class LibraryReceiving : public Receiving {
 public:
  LibraryReceiving();
  ~LibraryReceiving() override;
  LibraryReceiving(const LibraryReceiving&) = delete;
  LibraryReceiving& operator=(const LibraryReceiving&) = delete;

  [[nodiscard]] sockaddr_in address() const override { return assoc_.localAddr; }
  void prepareFor(const Datagram& datagram) override { state_ = datagram.state; }

 private:
  static void onEvent(AssocEvent* event);

  TembraAssociation& assoc_;
  std::atomic<int> state_{ASSOC_IDLE};
};

/// The same system calls in a bare loop, with an empty callback.
class BareReceiving : public Receiving {
 public:
  BareReceiving();
  ~BareReceiving() override;
  BareReceiving(const BareReceiving&) = delete;
  BareReceiving& operator=(const BareReceiving&) = delete;

  [[nodiscard]] sockaddr_in address() const override { return address_; }
  void prepareFor(const Datagram& datagram) override;

 private:
  void run();
  void handle(const unsigned char* bytes, ssize_t size);

  UdpSocket socket_;
  sockaddr_in address_;
  sockaddr_in answerTo_{};
  size_t answerSize_ = 0;
  int entries_ = 0;
  std::atomic<bool> ending_{false};
  std::thread thread_;
};

/// Seconds that one of `count` datagrams takes that wait already.
double drain(Receiving& receiving, const Daemons& daemons, const Datagram& datagram, int count);

}  // namespace bench

#endif
