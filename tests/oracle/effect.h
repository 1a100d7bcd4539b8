// What can be seen of the service: one line for each thing that it does, and its fields afterwards.
#ifndef TEMBRA_TESTS_ORACLE_EFFECT_H
#define TEMBRA_TESTS_ORACLE_EFFECT_H

#include <cstddef>
#include <string>
#include <vector>

namespace oracle {

using Bytes = std::vector<unsigned char>;
using Lines = std::vector<std::string>;  // "log 0 text" and the like, each as it is

/// One line of the common order: a log line, a datagram sent, an event, a sleep, a time-out set, a result.
struct Effect {
  std::string line;
  Bytes bytes;        // of a datagram or an event
  std::string state;  // the service's state at that moment, for log lines, datagrams and events
};

/// A field of the service.
struct Field {
  const char* name;
  const unsigned char* bytes;
  std::size_t size;
};

template <typename Plain>
Field fieldOf(const char* name, const Plain& value) {
  return {name, reinterpret_cast<const unsigned char*>(&value), sizeof value};
}

}  // namespace oracle

#endif
