// docs/state-machine.md, as data.
#ifndef TEMBRA_TESTS_RECEIVER_TRANSITION_PAGE_H
#define TEMBRA_TESTS_RECEIVER_TRANSITION_PAGE_H

#include <iosfwd>
#include <string>
#include <vector>

/// One row of the page's transition table, as it is written there.
struct Transition {
  std::string from;
  std::string condition;
  std::string event;
  std::string to;
  std::string idle;
  std::string timeout;

  /// The row as an edge of the page's diagram.
  [[nodiscard]] std::string edge() const;
};

std::ostream& operator<<(std::ostream& stream, const Transition& row);

struct TransitionPage {
  std::vector<Transition> rows;    // in the order of the table
  std::vector<std::string> edges;  // of the diagram, "FROM --> TO : CONDITION / EVENT"
};

/// Reads the page. A page that cannot be read has no rows.
TransitionPage readTransitionPage();

#endif
