// What can be seen of a step, and how two accounts of it are told apart.
#ifndef TEMBRA_TESTS_MODEL_EFFECT_H
#define TEMBRA_TESTS_MODEL_EFFECT_H

#include <optional>
#include <string>
#include <vector>

#include "kit/trace.h"

namespace model {

using kit::Bytes;

/// One line of the common order: a log line, a datagram sent, an event, a sleep, a time-out set, a result.
struct Effect {
  std::string line;
  Bytes bytes;        // of a datagram or an event
  std::string state;  // the service's state at that moment, for log lines, datagrams and events
};

/// A field of the service after a step.
struct Field {
  const char* name;
  const unsigned char* bytes;
  std::size_t size;
};

template <typename Plain>
Field fieldOf(const char* name, const Plain& value) {
  return {name, reinterpret_cast<const unsigned char*>(&value), sizeof value};
}

/// The first difference, in words.
std::optional<std::string> difference(const std::vector<Effect>& library, const std::vector<Effect>& model);
std::optional<std::string> difference(const std::vector<Field>& library, const std::vector<Field>& model);

}  // namespace model

#endif
