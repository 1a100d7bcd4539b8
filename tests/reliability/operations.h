// Every operation of the public line, ready to be called.
#ifndef TEMBRA_TESTS_RELIABILITY_OPERATIONS_H
#define TEMBRA_TESTS_RELIABILITY_OPERATIONS_H

#include <tembra/assoc.h>

#include <string>
#include <vector>

struct Operation {
  const char* name;  // as the list of exported symbols has it
  void (*call)(TembraAssociation& assoc);

  /// Whether it opens or closes the connection, or starts a process: that one holds a copy of every descriptor until
  /// its program begins, so that for a moment the address of a closed connection is not free.
  [[nodiscard]] bool disturbsOpening() const;
};

const std::vector<Operation>& operations();

/// The callback that one of them registers.
void setOperationsCallback(void (*callback)(AssocEvent*));

/// The operations that the library exports; the receive thread's own entry is none.
std::vector<std::string> exportedOperations();

#endif
