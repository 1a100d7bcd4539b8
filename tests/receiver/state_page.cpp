#include "state_page.h"

#include <fstream>
#include <ostream>
#include <sstream>

namespace {

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

// "1 `ASSOC`" is the node ASSOC; a state without a name has a node of its own.
std::string nodeOfState(const std::string& state) {
  if (state == "any state") return "any";
  if (state == "any other state") return "other";
  const auto tick = state.find('`');
  return tick == std::string::npos ? state : state.substr(tick + 1, state.rfind('`') - tick - 1);
}

std::string nodeOfIdle(const std::string& idle) {
  if (idle == "unchanged") return "any";
  return idle == "0" ? "waiting" : "over";
}

Transition ofRadio(const std::vector<std::string>& cells) {
  const std::string& to = cells[3] == "unchanged" ? cells[0] : cells[3];
  const std::string edge = nodeOfState(cells[0]) + kArrow + nodeOfState(to) + " : " + cells[1] + " / " + cells[2];
  return {cells[0], cells[1], cells[2], cells[3], cells[4], cells[5], edge};
}

Transition ofIpServer(const std::vector<std::string>& cells) {
  const std::string edge = std::string("any") + kArrow + nodeOfIdle(cells[2]) + " : " + cells[0] + " / " + cells[1];
  return {"any state", cells[0], cells[1], "unchanged", cells[2], cells[3], edge};
}

}  // namespace

std::ostream& operator<<(std::ostream& stream, const Transition& row) {
  return stream << row.from << " | " << row.condition << " | " << row.event << " | " << row.to << " | " << row.idle
                << " | " << row.timeout;
}

PageSection readSection(const std::string& title) {
  std::ifstream page(TEMBRA_STATE_MACHINE_PAGE);
  PageSection section;
  bool inside = false;
  for (std::string line; std::getline(page, line);) {
    if (line.rfind("## ", 0) == 0) inside = line == "## " + title;
    if (!inside) continue;
    if (line.rfind("|---", 0) == 0) {
      section.rows.clear();
    } else if (line.rfind('|', 0) == 0) {
      section.rows.push_back(cellsOf(line));
    } else if (line.find(kArrow) != std::string::npos) {
      section.edges.push_back(trimmed(line));
    }
  }
  return section;
}

std::vector<Transition> transitionsOf(const PageSection& section) {
  std::vector<Transition> transitions;
  for (const auto& cells : section.rows) {
    if (cells.size() == 6) transitions.push_back(ofRadio(cells));
    if (cells.size() == 4) transitions.push_back(ofIpServer(cells));
  }
  return transitions;
}
