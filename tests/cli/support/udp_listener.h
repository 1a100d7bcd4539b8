// A server that only listens.
#ifndef TEMBRA_TESTS_CLI_UDP_LISTENER_H
#define TEMBRA_TESTS_CLI_UDP_LISTENER_H

#include <cstdint>
#include <optional>
#include <string>

namespace tembra::test {

class UdpListener {
 public:
  UdpListener(const char* address, std::uint16_t port);
  ~UdpListener();
  UdpListener(const UdpListener&) = delete;
  UdpListener& operator=(const UdpListener&) = delete;

  /// The next datagram that has arrived, whole.
  [[nodiscard]] std::optional<std::string> take() const;

 private:
  int socket_;
};

/// Stands in for the ZigBee server and tells what it was sent: "option button1/IAS".
class ZigbeeListener {
 public:
  ZigbeeListener();

  /// The two texts of the next command; empty when there is none.
  [[nodiscard]] std::string takeCommand() const;

 private:
  UdpListener server_;
};

}  // namespace tembra::test

#endif
