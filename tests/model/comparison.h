// A run on the library and on the model, step by step.
#ifndef TEMBRA_TESTS_MODEL_COMPARISON_H
#define TEMBRA_TESTS_MODEL_COMPARISON_H

#include <optional>
#include <string>
#include <vector>

#include "coverage.h"
#include "library.h"
#include "oracle/model.h"

namespace oracle {

struct Difference {
  std::size_t steps;  // up to and including the one that shows it
  std::string what;
};

/// What is done to the model after a step, and to the effects that it foretold: to see that comparing can fail.
using Alteration = void (*)(Model& model, std::vector<Effect>& effects);

/// Library and model, one step at a time from a common beginning.
class SideBySide {
 public:
  explicit SideBySide(Library& library);

  /// Does the step on both. What then differs, in words; null when they agree, or when the model cannot tell.
  std::optional<std::string> take(const Step& step, Alteration alteration = nullptr);

  [[nodiscard]] const Model& model() const { return model_; }
  [[nodiscard]] const std::vector<Effect>& seen() const { return seen_; }  // of the library, in the last step

 private:
  Library& library_;
  Model model_;
  std::vector<Effect> seen_;
};

/// Runs the steps; null when library and model agree throughout, or as far as the model can tell.
std::optional<Difference> compare(Library& library, const std::vector<Step>& steps, Alteration alteration = nullptr,
                                  Coverage* coverage = nullptr);

/// The shortest part of the run that still shows a difference.
std::vector<Step> shortest(Library& library, std::vector<Step> steps, Alteration alteration = nullptr);

/// Both of them, told to a human.
std::string report(Library& library, const std::vector<Step>& steps, Alteration alteration = nullptr);

}  // namespace oracle

#endif
