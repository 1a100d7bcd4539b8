// docs/state-machine.md, as data.
#ifndef TEMBRA_TESTS_RECEIVER_STATE_PAGE_H
#define TEMBRA_TESTS_RECEIVER_STATE_PAGE_H

#include <iosfwd>
#include <string>
#include <vector>

/// One section of the page: the rows of its last table, without the head, and the edges of its diagram.
struct PageSection {
  std::vector<std::vector<std::string>> rows;  ///< cells as they are written, without the blanks around them
  std::vector<std::string> edges;              ///< "FROM --> TO : CONDITION / EVENT"
};

/// Reads the section under the heading "## TITLE". A section that is not there has no rows.
PageSection readSection(const std::string& title);

/// What an answer or a time-out does, in the words of the page.
struct Transition {
  std::string from;
  std::string condition;
  std::string event;
  std::string to;
  std::string idle;
  std::string timeout;
  std::string edge;  ///< the row as an edge of the diagram
};

std::ostream& operator<<(std::ostream& stream, const Transition& row);

/// A row of six cells says all of that. A row of four is of a server that neither reads nor changes the state: its
/// diagram goes by `idle`.
std::vector<Transition> transitionsOf(const PageSection& section);

#endif
