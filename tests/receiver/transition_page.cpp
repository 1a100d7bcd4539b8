#include "transition_page.h"

#include <fstream>
#include <ostream>
#include <sstream>

namespace {

constexpr char kTableHead[] = "| From | Condition | Event | To | `idle` | Time-out |";
constexpr char kArrow[] = " --> ";

std::string trimmed(const std::string& text) {
  const auto first = text.find_first_not_of(' ');
  if (first == std::string::npos) return "";
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::vector<std::string> cellsOf(const std::string& line) {
  std::vector<std::string> cells;
  std::istringstream stream(line.substr(1));
  for (std::string cell; std::getline(stream, cell, '|');) cells.push_back(trimmed(cell));
  return cells;
}

// "1 `ASSOC`" is the node ASSOC; a cell without a name is a node itself, "any state" under its short name.
std::string diagramNode(const std::string& state) {
  if (state == "any state") return "any";
  const auto tick = state.find('`');
  return tick == std::string::npos ? state : state.substr(tick + 1, state.rfind('`') - tick - 1);
}

void readTable(std::istream& page, std::vector<Transition>& rows) {
  std::string line;
  std::getline(page, line);  // the rule under the head
  while (std::getline(page, line) && line.rfind('|', 0) == 0) {
    const auto cells = cellsOf(line);
    if (cells.size() == 6) rows.push_back({cells[0], cells[1], cells[2], cells[3], cells[4], cells[5]});
  }
}

}  // namespace

std::string Transition::edge() const {
  return diagramNode(from) + kArrow + diagramNode(to == "unchanged" ? from : to) + " : " + condition + " / " + event;
}

std::ostream& operator<<(std::ostream& stream, const Transition& row) {
  return stream << row.from << " | " << row.condition << " | " << row.event << " | " << row.to << " | " << row.idle
                << " | " << row.timeout;
}

TransitionPage readTransitionPage() {
  std::ifstream page(TEMBRA_STATE_MACHINE_PAGE);
  TransitionPage read;
  for (std::string line; std::getline(page, line);) {
    if (line == kTableHead) readTable(page, read.rows);
    if (line.find(kArrow) != std::string::npos) read.edges.push_back(trimmed(line));
  }
  return read;
}
