#include "comparison.h"

#include <utility>

#include "difference.h"
#include "operations.h"
#include "shrink.h"

namespace oracle {

SideBySide::SideBySide(Library& library) : library_(library) {
  model_.open();
  library_.begin();
  model_.effects.clear();
}

std::optional<std::string> SideBySide::take(const Step& step, Alteration alteration) {
  step.operation->onModel(model_, step);
  if (model_.unforeseen) return {};
  std::vector<Effect> foretold = std::exchange(model_.effects, {});
  if (alteration != nullptr) alteration(model_, foretold);
  seen_ = library_.perform(step);
  const auto found = difference(seen_, foretold);
  return found ? found : difference(library_.fields(), model_.fields());
}

std::optional<Difference> compare(Library& library, const std::vector<Step>& steps, Alteration alteration,
                                  Coverage* coverage) {
  SideBySide both(library);
  for (std::size_t i = 0; i < steps.size(); ++i) {
    const Model before = coverage == nullptr ? Model() : both.model();
    const auto found = both.take(steps[i], alteration);
    if (both.model().unforeseen) return {};
    if (found) return Difference{i + 1, *found};
    if (coverage != nullptr) coverage->note(before, steps[i], both.seen(), both.model());
  }
  return {};
}

std::vector<Step> shortest(Library& library, std::vector<Step> steps, Alteration alteration) {
  return shrink(std::move(steps), [&](const std::vector<Step>& part) -> std::size_t {
    const auto found = compare(library, part, alteration);
    return found ? found->steps : 0;
  });
}

std::string report(Library& library, const std::vector<Step>& steps, Alteration alteration) {
  const std::vector<Step> least = shortest(library, steps, alteration);
  const auto found = compare(library, least, alteration);
  return "after\n" + describe(least) + (found ? found->what : "no difference");
}

}  // namespace oracle
