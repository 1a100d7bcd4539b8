// The datagrams of the system on the loopback interface, by libpcap. It is loaded when it is needed: nobody who records
// nothing has to install it.
#ifndef TEMBRA_CLI_CAPTURE_H
#define TEMBRA_CLI_CAPTURE_H

#include <functional>
#include <memory>
#include <string>

#include "cli/record/datagram.h"

namespace tembra::cli {

struct Pcap;

class Capture {
 public:
  /// Begins. Throws Failure with a sentence: libpcap is missing, or the user may not.
  Capture();
  ~Capture();
  Capture(const Capture&) = delete;
  Capture& operator=(const Capture&) = delete;

  /// Readable when there are datagrams.
  [[nodiscard]] int descriptor() const;

  /// The datagrams that have come. Throws Failure.
  void read(const std::function<void(Datagram)>& onDatagram);

  /// How many the system had no room for.
  [[nodiscard]] unsigned lost() const;

 private:
  std::unique_ptr<Pcap> pcap_;
};

}  // namespace tembra::cli

#endif
