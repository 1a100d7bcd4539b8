// What the daemons send, one kind for each way through a flow that needs no database.
#ifndef TEMBRA_BENCH_RIG_DATAGRAMS_H
#define TEMBRA_BENCH_RIG_DATAGRAMS_H

#include <tembra/vocabulary.h>

#include <string>
#include <vector>

namespace bench {

struct Datagram {
  static constexpr ServerType kNobody{};

  std::string name;
  ServerType sender;
  AssocState state;  ///< of the service when it arrives
  std::vector<unsigned char> bytes;
  ServerType answerTo = kNobody;  ///< the daemon that the flow sends something to
  int entries = 0;                ///< JSON texts in it, which the router's tokenizer has to read
};

/// For each flow the cheapest and the dearest.
std::vector<Datagram> datagramsOfAllFlows();

/// The shortest that makes an event: of a Nest account, number `value`.
Datagram shortDatagram(int value);

}  // namespace bench

#endif
