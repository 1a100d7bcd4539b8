// A receive pass, and how many datagrams a second go through the receive thread.
#include "rig/receiving.h"

#include <sys/socket.h>
#include <sys/uio.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <thread>

#include "figures.h"

namespace bench {
namespace {

constexpr int kMoreTurns = 5;
constexpr int kWaiting = 32;  // as many of the longest as a socket's buffer holds

// Sends one datagram for ever, many with each system call, until it goes out of scope.
class Flood {
 public:
  Flood(const UdpSocket& from, const Datagram& datagram, const sockaddr_in& to)
      : bytes_(datagram.bytes), to_(to), thread_([this, &from] { run(from.descriptor()); }) {}
  ~Flood() {
    stopping_ = true;
    thread_.join();
  }
  Flood(const Flood&) = delete;
  Flood& operator=(const Flood&) = delete;

 private:
  void run(int descriptor) {
    iovec data{bytes_.data(), bytes_.size()};
    std::array<mmsghdr, 64> messages{};
    for (mmsghdr& message : messages) {
      message.msg_hdr.msg_name = &to_;
      message.msg_hdr.msg_namelen = sizeof to_;
      message.msg_hdr.msg_iov = &data;
      message.msg_hdr.msg_iovlen = 1;
    }
    while (!stopping_) sendmmsg(descriptor, messages.data(), messages.size(), 0);
  }

  std::vector<unsigned char> bytes_;
  sockaddr_in to_;
  std::atomic<bool> stopping_{false};
  std::thread thread_;
};

// Seconds per datagram that was told of, while more arrive than can be handled.
double flooded(const Receiving& receiving, const Daemons& daemons, double seconds) {
  const Datagram datagram = shortDatagram(0);
  const Flood flood(daemons.at(SERVER_NEST), datagram, receiving.address());
  const std::chrono::duration<double> part(seconds / 10);
  std::this_thread::sleep_for(part);
  const long before = receiving.told();
  const Clock::time_point from = Clock::now();
  std::this_thread::sleep_for(part * 10);
  return secondsSince(from) / static_cast<double>(receiving.told() - before);
}

void addPass(Report& report, const Datagram& datagram, double library, double bare) {
  report.add({.number = 1,
              .what = "receive pass: " + datagram.name,
              .unit = Unit::kNanoseconds,
              .value = library * 1e9,
              .limit = bare * 1e9,
              .mostRatio = 1.25});
}

void addRate(Report& report, const char* what, double library, double bare) {
  report.add({.number = 2,
              .what = what,
              .unit = Unit::kPerSecond,
              .value = 1 / library,
              .limit = 1 / bare,
              .leastRatio = 0.85,
              .least = 300'000});
}

void measurePasses(const Effort& effort, const Daemons& daemons, Receiving& library, Receiving& bare, Report& report) {
  const std::vector<Datagram> datagrams = datagramsOfAllFlows();
  Effort turns = effort;  // short turns: what disturbs the machine for a while disturbs both sides
  turns.repetitions = effort.repetitions * kMoreTurns;
  const int batches = std::max(1, effort.batches / kMoreTurns);
  Comparison comparison(turns);
  for (const Datagram& datagram : datagrams) {
    comparison.measured("library " + datagram.name, batches,
                        [&] { return drain(library, daemons, datagram, kWaiting); });
    comparison.measured("bare " + datagram.name, batches, [&] { return drain(bare, daemons, datagram, kWaiting); });
  }
  const std::map<std::string, double> seconds = comparison.run();
  for (const Datagram& datagram : datagrams) {
    addPass(report, datagram, seconds.at("library " + datagram.name), seconds.at("bare " + datagram.name));
  }
  const std::string cheapest = datagrams.back().name;
  addRate(report, "datagrams a second that wait, logging at warning", seconds.at("library " + cheapest),
          seconds.at("bare " + cheapest));
}

void measureFlood(const Effort& effort, const Daemons& daemons, Receiving& library, Receiving& bare, Report& report) {
  const double span = std::max(0.02, effort.secondsEach * 4);
  Comparison comparison(effort);
  comparison.measured("library", 1, [&] { return flooded(library, daemons, span); });
  comparison.measured("bare", 1, [&] { return flooded(bare, daemons, span); });
  const std::map<std::string, double> seconds = comparison.run();
  addRate(report, "the same while another core sends", seconds.at("library"), seconds.at("bare"));
}

}  // namespace

void measureReceiving(const Effort& effort, Report& report) {
  const Daemons daemons;
  LibraryReceiving library;
  BareReceiving bare;
  measurePasses(effort, daemons, library, bare, report);
  measureFlood(effort, daemons, library, bare, report);
}

}  // namespace bench
