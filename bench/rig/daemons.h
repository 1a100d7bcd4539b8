// The sockets of the router's daemons.
#ifndef TEMBRA_BENCH_RIG_DAEMONS_H
#define TEMBRA_BENCH_RIG_DAEMONS_H

#include <netinet/in.h>
#include <tembra/vocabulary.h>

#include <map>
#include <string>
#include <vector>

namespace bench {

/// "host:port"; throws when it is none.
sockaddr_in addressOf(const std::string& text);

/// A UDP socket, closed with the object.
class UdpSocket {
 public:
  explicit UdpSocket(const std::string& address);
  ~UdpSocket();
  UdpSocket(const UdpSocket&) = delete;
  UdpSocket& operator=(const UdpSocket&) = delete;

  [[nodiscard]] int descriptor() const { return descriptor_; }
  void send(const std::vector<unsigned char>& bytes, const sockaddr_in& to) const;
  void drain() const;

 private:
  int descriptor_;
};

/// All daemons that the library talks to.
class Daemons {
 public:
  Daemons();
  [[nodiscard]] const UdpSocket& at(ServerType server) const { return sockets_.at(server); }
  [[nodiscard]] static sockaddr_in addressOfServer(ServerType server);
  void drain() const;

 private:
  std::map<ServerType, UdpSocket> sockets_;
};

}  // namespace bench

#endif
