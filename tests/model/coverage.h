// What the runs have reached: the rows of the state machine's page, and the events.
#ifndef TEMBRA_TESTS_MODEL_COVERAGE_H
#define TEMBRA_TESTS_MODEL_COVERAGE_H

#include <map>
#include <string>
#include <vector>

#include "oracle/model.h"
#include "receiver/state_page.h"
#include "step.h"

namespace oracle {

class Coverage {
 public:
  Coverage();

  /// Takes note of a step on which library and model agreed.
  void note(const Model& before, const Step& step, const std::vector<Effect>& seen, const Model& after);

  [[nodiscard]] unsigned long steps() const { return steps_; }

  /// The rows of the page, the events and the operations that no step has reached.
  [[nodiscard]] std::vector<std::string> unreached() const;

  /// How often each was reached, a line each.
  [[nodiscard]] std::string text() const;

 private:
  std::vector<Transition> rows_;
  std::map<std::string, unsigned long> times_;
  unsigned long steps_ = 0;
};

}  // namespace oracle

#endif
